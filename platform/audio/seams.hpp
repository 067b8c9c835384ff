// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Functions that replace the output and the session's answers, for tests and for programs that render to a
// buffer. Any thread except the audio thread.
#pragma once

#include "platform/audio/OutputDevice.hpp"
#include "platform/foundation/Error.hpp"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

/// Replaces the process's output by `device`; null restores the automatic output. Existing engines keep their
/// device.
void setSharedOutputDevice(std::shared_ptr<OutputDevice> device);

/// Functions that the audio session calls before its operations. If a function returns an error, the
/// operation returns that error and does nothing else. The functions are called under a mutex and must not
/// use the session.
struct SessionFaults {
    std::function<std::optional<Error>()> setCategory;
    std::function<std::optional<Error>(bool active)> setActive;
};
void setSessionFaults(SessionFaults faults);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What this room takes from the outside, for those who put something else there: tests, and programs that
// render to a buffer. Any thread but the audio thread.
#pragma once

#include "platform/audio/OutputDevice.hpp"
#include "platform/foundation/Error.hpp"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

/// Replaces the process's output by `device` (null: the automatic one again); existing engines keep theirs.
void setSharedOutputDevice(std::shared_ptr<OutputDevice> device);

/// What the audio session asks before an operation: an error that one of these returns takes the operation's
/// place. They are called under a lock and must not use the session.
struct SessionFaults {
    std::function<std::optional<Error>()> setCategory;
    std::function<std::optional<Error>(bool active)> setActive;
};
void setSessionFaults(SessionFaults faults);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Opens a URL in the program that the user has chosen for it on the desktop. Main thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <functional>

namespace platform {

/// Opens `url` with `xdg-open`, or with the desktop's portal if there is no such program, and returns at
/// once. `completion`, which may be empty, is called on the main queue with whether one of them accepted it.
/// Failures are reported on standard error.
void openOnDesktop(const URL& url, std::function<void(bool)> completion);

} // namespace platform

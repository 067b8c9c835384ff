// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Handing a URL to the desktop, which shows it in the program that the user chose for it. Main thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <functional>

namespace platform {

/// Opens `url` by `xdg-open`, or by the desktop's portal where there is no such program, and return at once.
/// `completion`, which may be empty, is called on the main queue with whether one of them took it. What goes
/// wrong is said on standard error.
void openOnDesktop(const URL& url, std::function<void(bool)> completion);

} // namespace platform

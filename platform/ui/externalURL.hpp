// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Opens a URL in the desktop's default program for it. Main thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <functional>

namespace platform {

/// Opens `url` with `xdg-open`, or through the desktop's portal if `xdg-open` cannot be started, and returns
/// at once. `completion`, which may be empty, is called on the main queue; its argument states whether
/// `xdg-open` was started or the portal accepted the URL. Failures are reported on standard error.
void openOnDesktop(const URL& url, std::function<void(bool)> completion);

} // namespace platform

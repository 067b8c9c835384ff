// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The identity of one of this project's graphical programs: its names, its main screen and its text for
// --help. Set once, before UIApplicationMain; read on the main thread.
#pragma once

#include "platform/foundation/product.hpp"

#include <string>

namespace platform {

struct ApplicationIdentity {
    std::string programName = product::Name;        // name of the executable and WM_CLASS of the windows
    std::string displayName = product::DisplayName; // name shown to users
    std::string interfaceName = "Main";             // base name of the main screen's .ui and .css files
    std::string help = {};                          // output of --help without the final newline
};

/// Returns the identity of this process. Before the first call of setApplicationIdentity() it has the
/// defaults above.
[[nodiscard]] const ApplicationIdentity& applicationIdentity() noexcept;
void setApplicationIdentity(ApplicationIdentity identity);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The identity of this process among the project's programs with a window: its names, its main screen, the
// text of --help. Set once, before UIApplicationMain; read on the main thread.
#pragma once

#include "platform/foundation/product.hpp"

#include <string>

namespace platform {

struct ApplicationIdentity {
    std::string programName = product::Name;        // of the executable; the windows' class too
    std::string displayName = product::DisplayName; // for display
    std::string interfaceName = "Main";             // of the main screen's description and its style sheet
    std::string help = {};                          // the answer to --help, without the last newline
};

/// Returns the identity of this process: the main program's, without a help text, until another is set.
[[nodiscard]] const ApplicationIdentity& applicationIdentity() noexcept;
void setApplicationIdentity(ApplicationIdentity identity);

} // namespace platform

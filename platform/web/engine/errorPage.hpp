// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The page shown in place of one that cannot be shown.
#pragma once

#include <string>

namespace platform {

/// Returns the HTML of a page that says `title`, `sentence` and the requested place, light or dark like the
/// desktop.
[[nodiscard]] std::string errorPage(const std::string& title, const std::string& sentence,
                                    const std::string& uri);

} // namespace platform

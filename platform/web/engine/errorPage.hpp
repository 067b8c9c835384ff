// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The page that is shown in place of a page that cannot be loaded.
#pragma once

#include <string>

namespace platform {

/// Returns the HTML of a page with `title`, `sentence` and the requested URI. It is light or dark like the
/// desktop.
[[nodiscard]] std::string errorPage(const std::string& title, const std::string& sentence,
                                    const std::string& uri);

} // namespace platform

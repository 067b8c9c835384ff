// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Paths as texts: components are separated by "/", empty ones dropped; a leading "/" is a component of its
// own. Pure functions; any thread.
#pragma once

#include <string_view>

namespace tonewright {

/// Returns the last component; empty when there is none, "/" for the root.
[[nodiscard]] std::string_view lastComponent(std::string_view path) noexcept;
/// Returns the path without its last component: "a/b" for "a/b/c", empty for "a", "/" for "/a".
[[nodiscard]] std::string_view withoutLastComponent(std::string_view path) noexcept;
/// Returns what follows the last "." of the last component; empty when it has none.
[[nodiscard]] std::string_view extensionOf(std::string_view path) noexcept;

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Functions for paths as text. Components are separated by "/", and empty components are ignored; a leading
// "/" is a component of its own. Any thread.
#pragma once

#include <string_view>

namespace tonewright {

/// Returns the last component, "/" for the root, or an empty text for an empty path.
[[nodiscard]] std::string_view lastComponent(std::string_view path) noexcept;
/// Returns the path without its last component: "a/b" for "a/b/c", empty for "a", "/" for "/a".
[[nodiscard]] std::string_view withoutLastComponent(std::string_view path) noexcept;
/// Returns the text after the last "." of the last component, or an empty text if there is no ".".
[[nodiscard]] std::string_view extensionOf(std::string_view path) noexcept;

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Unique names. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

/// Returns a text that no other call returns. If there is a prefix, even an empty one, the text starts with
/// the prefix and "-".
[[nodiscard]] std::string uniqueName(std::optional<std::string_view> withPrefix);

} // namespace tonewright

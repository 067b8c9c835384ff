// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Names that nobody else uses. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

/// Returns a text that no other call gives, after `withPrefix` and "-" when there is a prefix, be it empty.
[[nodiscard]] std::string uniqueName(std::optional<std::string_view> withPrefix);

} // namespace tonewright

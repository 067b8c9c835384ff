// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The factory presets: named sets of values for every control except Enabled, which a preset leaves as it is.
// Immutable data, usable on any thread.
#pragma once

#include "Parameters.hpp"

#include <optional>
#include <span>
#include <string_view>

namespace tonewright::effect {

/// One factory preset; `symbol` ends its URI.
struct Preset {
    std::string_view symbol;
    std::string_view name;
    std::string_view comment;
    ParameterValues values;
};

/// Returns the presets in menu order.
[[nodiscard]] std::span<const Preset> factoryPresets() noexcept;

/// Finds the preset whose values are exactly these (Enabled apart).
[[nodiscard]] std::optional<std::size_t> matchingPreset(const ParameterValues& values) noexcept;

} // namespace tonewright::effect

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The factory presets: named sets of values for all controls except Enabled, which presets do not change.
// Immutable data; any thread.
#pragma once

#include "Parameters.hpp"

#include <optional>
#include <span>
#include <string_view>

namespace tonewright::effect {

/// A factory preset. `symbol` is the end of its URI.
struct Preset {
    std::string_view symbol;
    std::string_view name;
    std::string_view comment;
    ParameterValues values;
};

/// Returns the presets in menu order.
[[nodiscard]] std::span<const Preset> factoryPresets() noexcept;

/// Returns the index of the preset with these values (except Enabled), or no value.
[[nodiscard]] std::optional<std::size_t> matchingPreset(const ParameterValues& values) noexcept;

} // namespace tonewright::effect

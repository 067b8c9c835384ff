// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The plug-in's ports: audio, messages, latency, then one for each control of the table.
#pragma once

#include "effect/dsp/Parameters.hpp"

#include <cstdint>

namespace tonewright::effect {

enum Port : std::uint32_t {
    InputLeft,
    InputRight,
    OutputLeft,
    OutputRight,
    Control, ///< atoms in: MIDI, and the panel's requests
    Notify,  ///< atoms out: MIDI, and what the panel shows
    Latency,
    FirstParameter,
};

inline constexpr std::uint32_t PortCount = FirstParameter + static_cast<std::uint32_t>(ParameterCount);

[[nodiscard]] constexpr std::uint32_t portOf(Parameter parameter) noexcept {
    return FirstParameter + static_cast<std::uint32_t>(parameter);
}

} // namespace tonewright::effect

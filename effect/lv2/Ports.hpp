// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The plug-in's ports: audio, messages, latency, and one port for each control in the parameter table.
#pragma once

#include "effect/dsp/Parameters.hpp"

#include <cstdint>

namespace tonewright::effect {

enum Port : std::uint32_t {
    InputLeft,
    InputRight,
    OutputLeft,
    OutputRight,
    Control, ///< atom input: MIDI and the panel's requests
    Notify,  ///< atom output: MIDI and display frames for the panel
    Latency,
    FirstParameter,
};

inline constexpr std::uint32_t PortCount = FirstParameter + static_cast<std::uint32_t>(ParameterCount);

[[nodiscard]] constexpr std::uint32_t portOf(Parameter parameter) noexcept {
    return FirstParameter + static_cast<std::uint32_t>(parameter);
}

} // namespace tonewright::effect

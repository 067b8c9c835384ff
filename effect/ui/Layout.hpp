// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The layout of the panel for any window size. Pure computation.
#pragma once

#include "Geometry.hpp"
#include "effect/dsp/Parameters.hpp"

#include <array>
#include <optional>
#include <vector>

namespace tonewright::effect {

inline constexpr int NaturalWidth = 760;
inline constexpr int NaturalHeight = 440;
inline constexpr int MinimumWidth = 420;
inline constexpr int MinimumHeight = 260;

enum class ControlKind { PresetMenu, PreviousPreset, NextPreset, Power, Selector, Knob };

/// An item of the panel that can have the focus and be operated.
struct PanelControl {
    ControlKind kind = ControlKind::Knob;
    Parameter parameter = Parameter::Drive; ///< for Power, Selector and Knob
    Rect area;
};

struct PanelSection {
    Section section = Section::Drive;
    Rect area;
    Rect title;
};

struct Layout {
    Rect window;
    double unit = 1.; ///< the size of a design pixel, in window pixels
    Rect header;
    Rect name;
    Rect display;
    Rect inputMeter;
    Rect outputMeter;
    std::vector<PanelSection> sections;
    std::vector<PanelControl> controls; ///< in the order in which Tab visits them

    /// Returns the index of the control at a point, or no value.
    [[nodiscard]] std::optional<std::size_t> controlAt(Point point) const noexcept;
};

/// Lays out the panel, with two rows of sections, or three if the window is narrow and tall.
[[nodiscard]] Layout layOut(int width, int height);

} // namespace tonewright::effect

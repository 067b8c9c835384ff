// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How knobs, selectors and buttons are drawn.
#pragma once

#include "Layout.hpp"
#include "Theme.hpp"

#include <cairo.h>

#include <optional>
#include <string>

namespace tonewright::effect {

/// What a control shows besides its place.
struct ControlLook {
    float value = 0.F;
    std::string text; ///< of its value, or what is being typed
    bool focused = false;
    bool hovered = false;
    bool active = false;             ///< dragged, open or typed into
    bool enabled = true;             ///< the effect is on
    std::optional<float> modulation; ///< the modulated value, as knob travel
};

void drawControl(cairo_t* context, const PanelControl& control, const ControlLook& look, double unit);

} // namespace tonewright::effect

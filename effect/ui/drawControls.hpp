// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Drawing of knobs, selectors and buttons.
#pragma once

#include "Layout.hpp"
#include "Theme.hpp"

#include <cairo.h>

#include <optional>
#include <string>

namespace tonewright::effect {

/// The state of a control that affects its drawing.
struct ControlLook {
    float value = 0.F;
    std::string text; ///< the text of the value, or the text being typed
    bool focused = false;
    bool hovered = false;
    bool active = false;             ///< being dragged, pressed or typed into, or its menu is open
    bool enabled = true;             ///< whether the effect is on
    std::optional<float> modulation; ///< the modulated value, as knob travel
};

void drawControl(cairo_t* context, const PanelControl& control, const ControlLook& look, double unit);

} // namespace tonewright::effect

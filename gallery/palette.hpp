// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The gallery's colours: at least 3:1 against the exhibits' ground and the window's in Adwaita, light and
// dark; everything else is the desktop's text colour, faded.
#pragma once

#include "platform/ui/Canvas.hpp"

namespace tonewright::palette {

inline constexpr platform::Color Moving{0.20, 0.51, 0.88, 1};
inline constexpr platform::Color Arrived{0.12, 0.57, 0.34, 1};
inline constexpr platform::Color Struck{0.84, 0.33, 0.06, 1};

inline constexpr double Waiting = 0.4; // of the moving colour: what has not begun
inline constexpr double Faint = 0.18;  // of the text colour: lines that only guide
inline constexpr double Quiet = 0.65;  // of the text colour: captions

} // namespace tonewright::palette

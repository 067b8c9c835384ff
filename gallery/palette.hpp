// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The gallery's colours. Their contrast to the backgrounds of the exhibits and the window is at least 3:1 in
// the light and the dark variant of Adwaita. All other colours are the desktop's text colour at a lower
// opacity.
#pragma once

#include "platform/ui/Canvas.hpp"

namespace tonewright::palette {

inline constexpr platform::Color Moving{0.20, 0.51, 0.88, 1};
inline constexpr platform::Color Arrived{0.12, 0.57, 0.34, 1};
inline constexpr platform::Color Struck{0.84, 0.33, 0.06, 1};

inline constexpr double Waiting = 0.4; // opacity of the moving colour before a member starts
inline constexpr double Faint = 0.18;  // opacity of the text colour for guide lines
inline constexpr double Quiet = 0.65;  // opacity of the text colour for captions

} // namespace tonewright::palette

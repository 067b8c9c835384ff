// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The gallery's colours: readable on light and on dark; everything else is the desktop's text colour, faded.
#pragma once

#include "platform/ui/Canvas.hpp"

namespace tonewright::palette {

inline constexpr platform::Color Moving{0.21, 0.52, 0.89, 1};
inline constexpr platform::Color Arrived{0.18, 0.65, 0.41, 1};
inline constexpr platform::Color Struck{0.90, 0.38, 0.10, 1};

inline constexpr double Faint = 0.18; // of the text colour: lines that only guide
inline constexpr double Quiet = 0.65; // of the text colour: captions

} // namespace tonewright::palette

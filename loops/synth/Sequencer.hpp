// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts a recipe's parts to timed notes and strokes, with swing, human variation, and ties across the
// loop's end. Pure functions; the variation depends only on the recipe's seed.
#pragma once

#include "Recipe.hpp"

#include <vector>

namespace tonewright::loops {

/// A note, and the frame of the loop at which it starts.
struct TimedNote {
    std::size_t frame = 0;
    Note note;
};

/// A stroke, and the frame of the loop at which it starts.
struct TimedStroke {
    std::size_t frame = 0;
    Stroke stroke;
};

/// Returns the notes of a pitched track.
[[nodiscard]] std::vector<TimedNote> notesOf(const Recipe& recipe, const Track& track);

/// Returns the strokes of one row of a drum track.
[[nodiscard]] std::vector<TimedStroke> strokesOf(const Recipe& recipe, const Track& track,
                                                 const DrumRow& row);

} // namespace tonewright::loops

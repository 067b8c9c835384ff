// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Parses the parts of recipes: the lines that begin them, the lines in them, and checks of a whole part.
// Functions that return a string return an error message, or an empty string. Pure functions, callable from
// any thread.
#pragma once

#include "Recipe.hpp"
#include "SoundLibrary.hpp"
#include "TextLines.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright::loops {

/// Appends a part to `recipe` for the line "drums" or "play" with these arguments.
[[nodiscard]] std::string beginTrack(Recipe& recipe, const SoundLibrary& sounds, std::size_t line, bool drums,
                                     Words arguments);

/// Parses a line of the part `track`; `rest` is the text of `arguments`.
[[nodiscard]] std::string readTrackLine(Track& track, const SoundLibrary& sounds, std::string_view keyword,
                                        std::string_view rest, Words arguments);

/// Returns the error of the first faulty part of a recipe whose chords have been read.
[[nodiscard]] std::optional<LineFault> faultOfTracks(const Recipe& recipe);

} // namespace tonewright::loops

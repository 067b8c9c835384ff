// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads the parts of recipes: their beginnings, their lines, and what is wrong with a whole part. A message
// that is not empty says what is wrong with a line. Pure; any thread.
#pragma once

#include "Recipe.hpp"
#include "SoundLibrary.hpp"
#include "TextLines.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright::loops {

/// Appends the part that the line "drums" or "play" begins, with these arguments, to `recipe`.
[[nodiscard]] std::string beginTrack(Recipe& recipe, const SoundLibrary& sounds, std::size_t line, bool drums,
                                     Words arguments);

/// Reads a line of the part `track`; `rest` is the text of `arguments`.
[[nodiscard]] std::string readTrackLine(Track& track, const SoundLibrary& sounds, std::string_view keyword,
                                        std::string_view rest, Words arguments);

/// Returns what is wrong with the first faulty part of a recipe whose chords are laid out.
[[nodiscard]] std::optional<LineFault> faultOfTracks(const Recipe& recipe);

} // namespace tonewright::loops

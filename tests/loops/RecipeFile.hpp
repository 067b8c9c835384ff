// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The recipes in the source tree. For tests.
#pragma once

#include "loops/synth/Recipe.hpp"
#include "loops/synth/SoundLibrary.hpp"

namespace tonewright::loops {

/// Reads recipe `number`, 1 to 80; a fault fails the running test and gives an empty recipe.
[[nodiscard]] Recipe recipeNumber(int number);

/// Returns the instruments and kits in the source tree.
[[nodiscard]] const SoundLibrary& soundsOfTheTree();

/// Reads a recipe from text; a fault fails the running test.
[[nodiscard]] Recipe recipeOf(std::string_view text);

} // namespace tonewright::loops

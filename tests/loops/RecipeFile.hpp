// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The recipes in the source tree. For tests.
#pragma once

#include "tools/loops/synth/Recipe.hpp"

namespace tonewright::loops {

/// Reads recipe `number`, 1 to 80; a fault fails the running test and gives an empty recipe.
[[nodiscard]] Recipe recipeNumber(int number);

/// Reads a recipe that is meant to be sound from text.
[[nodiscard]] Recipe recipeOf(std::string_view text);

} // namespace tonewright::loops

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Parses recipes. loops/README.md describes the format. A pure function, callable from any thread.
#pragma once

#include "Recipe.hpp"
#include "SoundLibrary.hpp"

#include <string_view>
#include <variant>

namespace tonewright::loops {

/// Parses a whole recipe, or returns the error of its first faulty line. Instruments and kits are looked up
/// in `sounds`.
[[nodiscard]] std::variant<Recipe, LineFault> parseRecipe(std::string_view text, const SoundLibrary& sounds);

} // namespace tonewright::loops

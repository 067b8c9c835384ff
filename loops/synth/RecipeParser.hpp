// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads recipes. The format is described in loops/README.md. Pure; any thread.
#pragma once

#include "Recipe.hpp"
#include "SoundLibrary.hpp"

#include <string_view>
#include <variant>

namespace tonewright::loops {

/// Reads a whole recipe, or returns what is wrong with its first faulty line. Instruments and kits come from
/// `sounds`.
[[nodiscard]] std::variant<Recipe, LineFault> parseRecipe(std::string_view text, const SoundLibrary& sounds);

} // namespace tonewright::loops

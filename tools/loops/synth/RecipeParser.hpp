// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads recipes. The format is described in resources/loops/README.md. Pure; any thread.
#pragma once

#include "Recipe.hpp"

#include <string>
#include <string_view>
#include <variant>

namespace tonewright::loops {

/// What is wrong with a recipe, and where.
struct RecipeFault {
    std::size_t line = 0; // from 1; 0 when the recipe as a whole is meant
    std::string message;  // one clause, without a full stop
};

/// Reads a whole recipe, or says what is wrong with the first line that is.
[[nodiscard]] std::variant<Recipe, RecipeFault> parseRecipe(std::string_view text);

} // namespace tonewright::loops

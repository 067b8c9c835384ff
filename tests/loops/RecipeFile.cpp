// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RecipeFile.hpp"

#include "tools/loops/synth/RecipeParser.hpp"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace tonewright::loops {

Recipe recipeOf(std::string_view text) {
    std::variant<Recipe, RecipeFault> read = parseRecipe(text);
    if (const auto* fault = std::get_if<RecipeFault>(&read)) {
        ADD_FAILURE() << "line " << fault->line << ": " << fault->message;
        return {};
    }
    return std::get<Recipe>(std::move(read));
}

Recipe recipeNumber(int number) {
    const char* tree = std::getenv("TONEWRIGHT_SOURCE_DIR");
    const std::string file =
        std::string(tree == nullptr ? "." : tree) + "/resources/loops/" + std::to_string(number) + ".loop";
    std::ifstream in(file, std::ios::binary);
    EXPECT_TRUE(in.is_open()) << file;
    return recipeOf(std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>()));
}

} // namespace tonewright::loops

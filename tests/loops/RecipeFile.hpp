// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Recipes for tests, from a string or from the source tree.
#pragma once

#include "loops/synth/RecipeParser.hpp"
#include "loops/synth/SoundLibrary.hpp"
#include "tests/support/testing.hpp"

namespace tonewright::loops {

/// Returns the content of a file in the recipes' folder.
inline std::string recipeText(const std::string& name) {
    const std::string file = test::sourceTree() + "/loops/recipes/" + name;
    EXPECT_TRUE(std::filesystem::exists(file)) << file;
    return test::contentOf(file);
}

inline const SoundLibrary& soundsOfTheTree() {
    static const SoundLibrary sounds = [] {
        SoundLibrary read;
        for (const char* name : {"instruments.sounds", "kits.sounds"}) {
            const auto fault = read.read(recipeText(name));
            EXPECT_FALSE(fault) << name << ":" << fault->line << ": " << fault->message;
        }
        return read;
    }();
    return sounds;
}

/// Returns the recipe that `text` describes; an error in `text` fails the test.
inline Recipe recipeOf(std::string_view text) {
    std::variant<Recipe, LineFault> read = parseRecipe(text, soundsOfTheTree());
    if (const auto* fault = std::get_if<LineFault>(&read)) {
        ADD_FAILURE() << "line " << fault->line << ": " << fault->message;
        return {};
    }
    return std::get<Recipe>(std::move(read));
}

inline Recipe recipeNumber(int number) {
    return recipeOf(recipeText(std::to_string(number) + ".loop"));
}

} // namespace tonewright::loops

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RecipeFile.hpp"

#include "loops/synth/RecipeParser.hpp"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace tonewright::loops {

namespace {

std::string contentOf(const std::string& name) {
    const char* tree = std::getenv("TONEWRIGHT_SOURCE_DIR");
    const std::string file = std::string(tree == nullptr ? "." : tree) + "/loops/recipes/" + name;
    std::ifstream in(file, std::ios::binary);
    EXPECT_TRUE(in.is_open()) << file;
    return {(std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>()};
}

} // namespace

const SoundLibrary& soundsOfTheTree() {
    static const SoundLibrary Sounds = [] {
        SoundLibrary sounds;
        for (const char* name : {"instruments.sounds", "kits.sounds"}) {
            const auto fault = sounds.read(contentOf(name));
            EXPECT_FALSE(fault) << name << ":" << fault->line << ": " << fault->message;
        }
        return sounds;
    }();
    return Sounds;
}

Recipe recipeOf(std::string_view text) {
    std::variant<Recipe, LineFault> read = parseRecipe(text, soundsOfTheTree());
    if (const auto* fault = std::get_if<LineFault>(&read)) {
        ADD_FAILURE() << "line " << fault->line << ": " << fault->message;
        return {};
    }
    return std::get<Recipe>(std::move(read));
}

Recipe recipeNumber(int number) {
    return recipeOf(contentOf(std::to_string(number) + ".loop"));
}

} // namespace tonewright::loops

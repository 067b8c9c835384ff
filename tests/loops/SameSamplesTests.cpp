// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The same recipe gives the same samples on every machine, with every compiler and at every level of
// optimisation.
#include "loops/synth/Render.hpp"
#include "tests/loops/RecipeFile.hpp"

using namespace tonewright::loops;

TEST(SameSamples, BitForBit) {
    // Between them these use every kind of source and most effects.
    const std::map<int, std::uint64_t> checksums{{10, 0x13380e80391c6780},
                                                 {20, 0x93720a009bbf2060},
                                                 {37, 0xb9876f65557e8aa4},
                                                 {47, 0x5b19f38f2fa9669e},
                                                 {69, 0x273a1e486748efd2}};
    for (const auto& [number, expected] : checksums) {
        const std::uint64_t found = checksum(render(recipeNumber(number)));
        EXPECT_EQ(found, expected)
            << "recipe " << number << std::hex << " gives 0x" << found
            << ": if the recipe or an instrument was changed on purpose, this is its new checksum";
    }
}

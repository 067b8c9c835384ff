// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The same recipe gives the same samples on every machine, with every compiler and at every level of
// optimisation.

#include "RecipeFile.hpp"
#include "loops/synth/Render.hpp"

#include <gtest/gtest.h>

namespace tonewright::loops {
namespace {

struct Expected {
    int recipe;
    std::uint64_t checksum;
};

class SameSamples : public testing::TestWithParam<Expected> {};

TEST_P(SameSamples, BitForBit) {
    const std::uint64_t found = checksum(render(recipeNumber(GetParam().recipe)));
    EXPECT_EQ(found, GetParam().checksum)
        << "recipe " << GetParam().recipe << std::hex << " gives 0x" << found
        << ": if the recipe or an instrument was changed on purpose, this is its new checksum";
}

// Between them they use every kind of source and most effects.
INSTANTIATE_TEST_SUITE_P(Recipes, SameSamples,
                         testing::Values(Expected{10, 0x13380e80391c6780}, Expected{20, 0x93720a009bbf2060},
                                         Expected{37, 0xb9876f65557e8aa4}, Expected{47, 0x5b19f38f2fa9669e},
                                         Expected{69, 0x273a1e486748efd2}),
                         [](const auto& one) { return std::to_string(one.param.recipe); });

} // namespace
} // namespace tonewright::loops

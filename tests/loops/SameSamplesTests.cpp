// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A recipe must render to the same samples on every machine, with every compiler and at every optimisation
// level.
#include "loops/synth/Render.hpp"
#include "tests/loops/RecipeFile.hpp"

using namespace tonewright::loops;

TEST(SameSamples, BitForBit) {
    // Together these recipes use every kind of source, every statement and every effect.
    const std::map<int, std::uint64_t> checksums{
        {10, 0x13380e80391c6780}, {20, 0x93720a009bbf2060}, {37, 0xb9876f65557e8aa4},
        {47, 0x5b19f38f2fa9669e}, {69, 0x273a1e486748efd2}, {73, 0x69817a36d2861793},
        {32, 0xb73d024ecf98e8d1}, {72, 0x9b464a4f72327988}, {64, 0x93516a556e395eef},
        {79, 0xf1e3d200c9fc05bd}, {75, 0x2b40642355a63d43}, {19, 0xdf124873a1d3548d},
        {5, 0x9653a14f0487faf7},  {9, 0x3f2ebcf1d01a1a5f},  {46, 0x10cc26ae6f7a5d21},
        {36, 0x1e4cef066157de33}, {38, 0x6b823b16f1f12533}};
    for (const auto& [number, expected] : checksums) {
        const std::uint64_t found = checksum(render(recipeNumber(number)));
        EXPECT_EQ(found, expected)
            << "recipe " << number << std::hex << " gives 0x" << found
            << ": if the recipe or an instrument was changed on purpose, this is its new checksum";
    }
}

// A fraction of a cycle would be heard as a click at the seam.
TEST(SameSamples, WhatSwingsDoesSoAWholeNumberOfTimes) {
    const auto played = [](const std::string& cycles) {
        return checksum(render(recipeOf(
            "tempo 120\nbars 1\nkey C major\nplay organ\nline 1\nfx phaser cycles=" + cycles + "\n")));
    };
    EXPECT_EQ(played("3.4"), played("3"));
}

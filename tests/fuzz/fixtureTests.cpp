// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Passes the stored inputs and many random ones through a fuzz target.
#include "tests/fuzz/fuzz.hpp"
#include "tests/support/testing.hpp"

TEST(Fuzz, KeptAndRandomInputs) {
    const tonewright::test::CapturedOutput output;
    const std::string fixtures = tonewright::test::sourceTree() + "/" + FUZZ_FIXTURES;
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(fixtures)) {
        fuzzOne(tonewright::test::contentOf(entry.path()));
        ++count;
    }
    EXPECT_GT(count, 0);
    std::mt19937 random(3);
    for (int i = 0; i < 3000; ++i) {
        std::string input(random() % 200, '\0');
        for (char& c : input) c = "/ab.%\0\x01\xff'<:?#@0129"[random() % 19];
        if (i % 2 == 0) {
            for (char& c : input) {
                if (random() % 3 == 0) c = static_cast<char>(random());
            }
        }
        fuzzOne(input);
    }
}

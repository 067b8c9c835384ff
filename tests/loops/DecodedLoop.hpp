// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A loop's file as the program plays it: pass after pass, at the file's rate. For tests; each call is on its
// own.
#pragma once

#include <string>
#include <vector>

namespace tonewright::loops {

struct DecodedLoop {
    int rate = 0;
    std::vector<std::vector<float>> channels; // in each pass as many frames as the file says
    std::string fault;                        // empty: all went well
};

[[nodiscard]] DecodedLoop decodeLoop(const std::string& path, int passes = 1);

} // namespace tonewright::loops

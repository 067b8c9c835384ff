// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes a loop's file as a careful player does: what the edit list hides is dropped, what follows the
// stated length is cut off. For tests; each call is on its own.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tonewright::loops {

struct DecodedLoop {
    int rate = 0;
    std::int64_t statedFrames = 0;            // what the file says
    std::int64_t decodedFrames = 0;           // before the tail is cut off
    std::vector<std::vector<float>> channels; // exactly the stated frames, when all went well
    std::string title;
    std::string fault; // empty: all went well
};

[[nodiscard]] DecodedLoop decodeLoop(const std::filesystem::path& file);

} // namespace tonewright::loops

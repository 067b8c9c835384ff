// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/app/engineFixture.hpp"

#include <algorithm>
#include <chrono>

namespace tonewright::test {

std::vector<float> EngineFixture::render(int frames) {
    return device->render(static_cast<std::uint64_t>(frames)).front();
}

std::vector<float> EngineFixture::renderUntil(const std::function<bool()>& done, double timeoutSeconds) {
    std::vector<float> heard;
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(timeoutSeconds);
    while (!done() && std::chrono::steady_clock::now() < end) {
        const auto block = render(256);
        heard.insert(heard.end(), block.begin(), block.end());
        platform::RunLoop::current().runUntil(done, 0.001);
    }
    EXPECT_TRUE(done());
    return heard;
}

testing::AssertionResult holdInOrder(const Lines& lines, const Lines& wanted) {
    auto from = lines.begin();
    for (const auto& line : wanted) {
        from = std::find(from, lines.end(), line);
        if (from == lines.end()) {
            auto failure = testing::AssertionFailure() << "missing, or not in its place: " << line << "\nin:";
            for (const auto& each : lines) failure << "\n  " << each;
            return failure;
        }
        ++from;
    }
    return testing::AssertionSuccess();
}

bool holdsLine(const Lines& lines, const std::string& start) {
    return std::any_of(lines.begin(), lines.end(), [&](const auto& line) { return line.starts_with(start); });
}

} // namespace tonewright::test

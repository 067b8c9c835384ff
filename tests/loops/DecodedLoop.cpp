// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DecodedLoop.hpp"

#include "tests/audio/audioFixture.hpp"

namespace tonewright::loops {

DecodedLoop decodeLoop(const std::string& path, int passes) {
    const auto file = platform::AVAudioFile::open(platform::URL::fileURLWithPath(path));
    if (!file) return {.rate = 0, .channels = {}, .fault = file.error().localizedDescription()};
    const platform::AVAudioFormat format = file.value()->processingFormat();
    test::OfflineEngine offline(format);
    offline.loop(file.value(), passes);
    offline.start();
    return {.rate = static_cast<int>(format.sampleRate),
            .channels = offline.render(static_cast<std::size_t>(file.value()->lengthFrames() * passes)),
            .fault = ""};
}

} // namespace tonewright::loops

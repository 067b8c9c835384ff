// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/audio/audioFixture.hpp"

using namespace platform;
using namespace tonewright::test;

namespace {

Result<std::shared_ptr<AVAudioFile>> openPath(const std::string& path) {
    return AVAudioFile::open(URL::fileURLWithPath(path));
}

} // namespace

TEST(AVAudioFile, TellsFormatAndExactLength) {
    const Scratch folder;
    for (const auto& [channels, rate, frames] :
         {std::tuple{1U, 44100U, 1UL}, {2U, 48000U, 4097UL}, {2U, 22050U, 100001UL}}) {
        writeSound(folder / "a:b c%41.wav", countingSound(channels, frames), rate);
        const auto file = openPath(folder / "a:b c%41.wav");
        ASSERT_TRUE(file);
        EXPECT_EQ(file.value()->processingFormat(), (AVAudioFormat{static_cast<double>(rate), channels}));
        EXPECT_EQ(file.value()->lengthFrames(), static_cast<std::int64_t>(frames));
    }
}

TEST(AVAudioFile, WhatIsNoSoundIsAnErrorInASentence) {
    const Scratch folder;
    (void)folder.file("empty.m4a", "");
    (void)folder.file("text.m4a", "This is a letter to a friend.\n");
    (void)folder.file("noise.m4a", std::string(5000, '\x5a'));
    writeSound(folder / "whole.wav", countingSound(2, 1000), 44100);
    (void)folder.file("head.wav", contentOf(folder / "whole.wav").substr(0, 44)); // no frame left
    (void)folder.file("half-head.wav", contentOf(folder / "whole.wav").substr(0, 20));
    for (const char* name :
         {"missing.m4a", "empty.m4a", "text.m4a", "noise.m4a", "head.wav", "half-head.wav", ""}) {
        const auto file = openPath(folder / name);
        ASSERT_FALSE(file) << name;
        const std::string sentence = file.error().localizedDescription();
        EXPECT_EQ(sentence.find('\n'), std::string::npos) << sentence;
        EXPECT_TRUE(sentence.starts_with("The file \"") && sentence.ends_with('.')) << sentence;
    }
    const auto web = AVAudioFile::open(*URL::fromString("https://tonewright.example/1.m4a"));
    EXPECT_FALSE(web);
}

TEST(AVAudioFile, ATruncatedFileIsPlayedAsFarAsItGoes) {
    const Scratch folder;
    const Sound pass = countingSound(2, 10000);
    writeSound(folder / "whole.wav", pass, 44100);
    const std::string bytes = contentOf(folder / "whole.wav");
    (void)folder.file("cut.wav", bytes.substr(0, bytes.size() / 2));
    const auto file = openPath(folder / "cut.wav");
    ASSERT_TRUE(file);
    OfflineEngine offline;
    offline.loop(file.value(), 2);
    offline.start();
    EXPECT_GT(firstDifference(offline.render(8000), pass), 4900U);
}

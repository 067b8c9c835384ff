// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/audio/audioFixture.hpp"

#include <fstream>

using namespace platform;
using namespace tonewright::test;

namespace {

Result<std::shared_ptr<AVAudioFile>> openPath(const std::string& path) {
    return AVAudioFile::open(URL::fileURLWithPath(path));
}

std::string bytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace

TEST(AVAudioFile, TellsFormatAndExactLength) {
    TemporaryFolder folder;
    for (const auto& [channels, rate, frames] :
         {std::tuple{1U, 44100U, 1UL}, {2U, 48000U, 4097UL}, {2U, 22050U, 100001UL}}) {
        const auto file = makeFile(folder.path("a:b c%41.wav"), countingSound(channels, frames), rate);
        ASSERT_TRUE(file);
        EXPECT_EQ(file->processingFormat(), (AVAudioFormat{static_cast<double>(rate), channels}));
        EXPECT_EQ(file->lengthFrames(), static_cast<std::int64_t>(frames));
    }
}

TEST(AVAudioFile, WhatIsNoSoundIsAnErrorInASentence) {
    TemporaryFolder folder;
    writeBytes(folder.path("empty.m4a"), "");
    writeBytes(folder.path("text.m4a"), "This is a letter to a friend.\n");
    writeBytes(folder.path("noise.m4a"), std::string(5000, '\x5a'));
    static_cast<void>(makeFile(folder.path("whole.wav"), countingSound(2, 1000), 44100));
    writeBytes(folder.path("head.wav"), bytesOf(folder.path("whole.wav")).substr(0, 44)); // no frame left
    writeBytes(folder.path("half-head.wav"), bytesOf(folder.path("whole.wav")).substr(0, 20));
    for (const char* name :
         {"missing.m4a", "empty.m4a", "text.m4a", "noise.m4a", "head.wav", "half-head.wav", ""}) {
        const auto file = openPath(folder.path(name));
        ASSERT_FALSE(file) << name;
        const std::string sentence = file.error().localizedDescription();
        EXPECT_EQ(sentence.find('\n'), std::string::npos) << sentence;
        EXPECT_TRUE(sentence.starts_with("The file \"") && sentence.ends_with('.')) << sentence;
    }
    const auto web = AVAudioFile::open(*URL::fromString("https://tonewright.example/1.m4a"));
    EXPECT_FALSE(web);
}

TEST(AVAudioFile, ATruncatedFileIsPlayedAsFarAsItGoes) {
    TemporaryFolder folder;
    const Sound pass = countingSound(2, 10000);
    static_cast<void>(makeFile(folder.path("whole.wav"), pass, 44100));
    const std::string bytes = bytesOf(folder.path("whole.wav"));
    writeBytes(folder.path("cut.wav"), bytes.substr(0, bytes.size() / 2));
    const auto file = openPath(folder.path("cut.wav"));
    ASSERT_TRUE(file);
    OfflineEngine offline;
    offline.loop(file.value(), 2);
    offline.start();
    EXPECT_GT(firstDifference(offline.render(8000), pass), 4900U);
}

TEST(AVAudioFile, AFileThatGoesBetweenPassesGoesOnPlaying) {
    TemporaryFolder folder;
    const Sound pass = countingSound(2, 3000);
    const auto file = makeFile(folder.path("pass.wav"), pass, 44100);
    std::filesystem::remove(folder.path("pass.wav"));
    OfflineEngine offline;
    offline.loop(file, 10);
    offline.start();
    EXPECT_EQ(firstDifference(offline.render(30000), repeated(pass, 10)), 30000U);
}

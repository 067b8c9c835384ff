// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests opening and playing files of every kind, whole and damaged.
#include "loops/encode/LoopEncoder.hpp"
#include "tests/audio/audioFixture.hpp"

using namespace platform;
using namespace tonewright::test;

namespace {

Result<std::shared_ptr<AVAudioFile>> openPath(const std::string& path) {
    return AVAudioFile::open(URL::fileURLWithPath(path));
}

constexpr std::size_t Frames = 60000;

// Encodes a sine with a whole number of periods in an m4a file; returns the file's bytes.
std::string encode(const std::string& path) {
    const auto error =
        tonewright::loops::encodeLoop({44100, Sound(2, sine(441, 0.5, Frames, 44100))}, "test", path);
    EXPECT_FALSE(error) << *error;
    return contentOf(path);
}

Sound play(const std::shared_ptr<AVAudioFile>& file, int passes) {
    EXPECT_EQ(file->lengthFrames(), static_cast<std::int64_t>(Frames));
    OfflineEngine offline(file->processingFormat());
    offline.loop(file, passes);
    offline.start();
    return offline.render(Frames * static_cast<std::size_t>(passes));
}

double decibels(const std::vector<float>& a, const std::vector<float>& b) {
    double error = 0, level = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        error += (a[i] - b[i]) * (a[i] - b[i]);
        level += b[i] * b[i];
    }
    return 10 * std::log10(error / level);
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
    (void)folder.file("head.wav", contentOf(folder / "whole.wav").substr(0, 44)); // contains no frame
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

TEST(CodedFile, WhatIsMissingInADamagedFileIsSilentAndTheRestStandsWhereItStood) {
    const Scratch folder;
    const std::string path = folder / "damaged.m4a";
    std::string bytes = encode(path);
    const Sound whole = play(openPath(path).value(), 1);
    const std::size_t data = bytes.find("mdat");
    ASSERT_NE(data, std::string::npos);
    for (std::size_t i = data + bytes.size() / 3; i < data + bytes.size() / 3 + 600; ++i) bytes[i] = '\xff';
    (void)folder.file("damaged.m4a", bytes);
    const Sound damaged = play(openPath(path).value(), 2);
    EXPECT_GT(firstDifference(damaged, whole), 5000U);
    const std::vector<float> tail(damaged[0].begin() + 55000, damaged[0].begin() + 60000);
    const std::vector<float> wholeTail(whole[0].begin() + 55000, whole[0].end());
    EXPECT_LT(decibels(tail, wholeTail), -60);
}

TEST(CodedFile, ATruncatedFileKeepsItsLengthOrIsAnError) {
    const Scratch folder;
    const std::string path = folder / "cut.m4a";
    const std::string bytes = encode(path);
    for (std::size_t part = 1; part < 16; ++part) {
        (void)folder.file("cut.m4a", bytes.substr(0, bytes.size() * part / 16));
        // `play` checks the length.
        if (const auto file = openPath(path)) static_cast<void>(play(file.value(), 2));
    }
}

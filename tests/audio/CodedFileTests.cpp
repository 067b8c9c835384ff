// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// m4a files, whole and damaged, under the player.
#include "loops/encode/LoopEncoder.hpp"
#include "tests/audio/audioFixture.hpp"

using namespace platform;
using namespace tonewright::test;

namespace {

constexpr std::size_t Frames = 60000;

// Writes a coded sine of a whole number of periods; returns its bytes.
std::string encode(const std::string& path) {
    const auto error = tonewright::loops::encodeLoop({44100, sine(441, 44100, 2, Frames)}, "test", path);
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

Result<std::shared_ptr<AVAudioFile>> openPath(const std::string& path) {
    return AVAudioFile::open(URL::fileURLWithPath(path));
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
        if (const auto file = openPath(path)) static_cast<void>(play(file.value(), 2)); // looks at the length
    }
}

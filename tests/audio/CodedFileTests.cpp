// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// m4a files, whole and damaged, under the player.
#include "tests/audio/audioFixture.hpp"
#include "tools/loops/encode/LoopEncoder.hpp"

#include <cmath>

using namespace platform;
using namespace tonewright::test;

namespace {

struct Coded {
    std::uint32_t rate;
    std::uint32_t channels;
    std::size_t frames;
};

// Encode a sine of a whole number of periods.
Sound encode(const Coded& coded, const std::string& path) {
    const double periods = std::round(440.0 * static_cast<double>(coded.frames) / coded.rate);
    Sound sound = sine(periods * coded.rate / static_cast<double>(coded.frames), coded.rate, coded.channels,
                       coded.frames);
    const auto error = tonewright::loops::encodeLoop({static_cast<int>(coded.rate), sound}, "test",
                                                     std::filesystem::path(path));
    EXPECT_FALSE(error) << *error;
    return sound;
}

Sound playPasses(const std::string& path, std::size_t frames, int passes) {
    const auto file = AVAudioFile::open(URL::fileURLWithPath(path));
    if (!file) {
        ADD_FAILURE() << file.error().localizedDescription();
        return {};
    }
    EXPECT_EQ(file.value()->lengthFrames(), static_cast<std::int64_t>(frames));
    OfflineEngine offline(file.value()->processingFormat());
    offline.loop(file.value(), passes);
    offline.start();
    return offline.render(frames * static_cast<std::size_t>(passes));
}

double decibels(const std::vector<float>& a, const std::vector<float>& b) {
    double error = 0;
    double level = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        error += (a[i] - b[i]) * (a[i] - b[i]);
        level += b[i] * b[i];
    }
    return 10 * std::log10(error / level);
}

} // namespace

TEST(CodedFile, EveryPassIsTheSameToTheFrame) {
    const Scratch folder;
    for (const Coded& coded : {Coded{44100, 2, 44100}, Coded{44100, 2, 45001}, Coded{48000, 1, 9999}}) {
        const std::string path = folder / "coded.m4a";
        const Sound exact = encode(coded, path);
        constexpr int Passes = 20;
        const Sound heard = playPasses(path, coded.frames, Passes);
        Sound first = heard;
        for (auto& plane : first) plane.resize(coded.frames);
        EXPECT_LT(decibels(first[0], exact[0]), -25); // it is the sound that was coded, at its place
        EXPECT_EQ(firstDifference(heard, repeated(first, Passes)), coded.frames * Passes) << coded.frames;
    }
}

TEST(CodedFile, WhatIsMissingInADamagedFileIsSilentAndTheRestStandsWhereItStood) {
    const Scratch folder;
    const std::string path = folder / "damaged.m4a";
    const Coded coded{44100, 2, 60000};
    static_cast<void>(encode(coded, path));
    const Sound whole = playPasses(path, coded.frames, 1);
    std::string bytes = contentOf(path);
    const std::size_t data = bytes.find("mdat");
    ASSERT_NE(data, std::string::npos);
    for (std::size_t i = data + bytes.size() / 3; i < data + bytes.size() / 3 + 600; ++i) bytes[i] = '\xff';
    (void)folder.file("damaged.m4a", bytes);
    const Sound damaged = playPasses(path, coded.frames, 2);
    EXPECT_GT(firstDifference(damaged, whole), 5000U);
    std::vector<float> tail(damaged[0].begin() + 55000, damaged[0].begin() + 60000);
    const std::vector<float> wholeTail(whole[0].begin() + 55000, whole[0].end());
    EXPECT_LT(decibels(tail, wholeTail), -60);
}

TEST(CodedFile, ATruncatedFileKeepsItsLengthOrIsAnError) {
    const Scratch folder;
    const std::string path = folder / "cut.m4a";
    const Coded coded{44100, 2, 60000};
    static_cast<void>(encode(coded, path));
    const std::string bytes = contentOf(path);
    for (std::size_t part = 1; part < 16; ++part) {
        (void)folder.file("cut.m4a", bytes.substr(0, bytes.size() * part / 16));
        if (AVAudioFile::open(URL::fileURLWithPath(path)))
            static_cast<void>(playPasses(path, coded.frames, 2)); // which looks at the length
    }
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Plays a file over and over on the offline device and compares every pass, at its expected position, with a
// reference that another program decoded. Prints the largest displacement of a pass in frames, or -1 if a
// pass matches nowhere near its position.
// Usage: bench_seam_ours FILE REFERENCE PASSES BLOCK_FRAMES
// REFERENCE is one pass as raw interleaved stereo floats.
#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"
#include "platform/audio/OfflineDevice.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

using namespace platform;

namespace {

constexpr float Tolerance = 1e-6F; // for floats that another program wrote
constexpr std::ptrdiff_t Reach = 3000;

std::vector<float> readFloats(const char* path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(in), {});
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::copy_n(bytes.data(), samples.size() * sizeof(float), reinterpret_cast<char*>(samples.data()));
    return samples;
}

// Returns whether `pass` equals the reference displaced by `shift` frames, as far as the two overlap.
bool standsAt(const std::vector<std::vector<float>>& pass, const std::vector<float>& reference,
              std::ptrdiff_t shift) {
    const auto length = static_cast<std::ptrdiff_t>(pass[0].size());
    const std::ptrdiff_t end = std::min(length, length - shift);
    for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(0, -shift); i < end; ++i) {
        for (std::size_t c = 0; c < 2; ++c) {
            const float wanted = reference[2 * static_cast<std::size_t>(i) + c];
            if (!(std::abs(pass[c][static_cast<std::size_t>(i + shift)] - wanted) <= Tolerance)) return false;
        }
    }
    return true;
}

long framesOff(const std::vector<std::vector<float>>& pass, const std::vector<float>& reference) {
    const auto reach = std::min<std::ptrdiff_t>(Reach, static_cast<std::ptrdiff_t>(pass[0].size()) - 1);
    for (std::ptrdiff_t shift = 0; shift <= reach; ++shift) {
        if (standsAt(pass, reference, shift) || standsAt(pass, reference, -shift)) return shift;
    }
    return -1;
}

} // namespace

int main(int count, char** arguments) {
    if (count < 5) return 1;
    const auto file = AVAudioFile::open(URL::fileURLWithPath(arguments[1]));
    if (!file) {
        std::fprintf(stderr, "%s\n", file.error().localizedDescription().c_str());
        return 1;
    }
    const std::vector<float> reference = readFloats(arguments[2]);
    const long passes = std::atol(arguments[3]);
    const auto device =
        std::make_shared<OfflineDevice>(AVAudioFormat{file.value()->processingFormat().sampleRate, 2},
                                        static_cast<std::uint32_t>(std::atol(arguments[4])));
    const auto engine = AVAudioEngine::create(device);
    const auto player = AVAudioPlayerNode::create();
    engine->attachNode(player);
    engine->connect(player, engine->mainMixerNode(), std::nullopt);
    std::atomic<bool> ended{false};
    std::function<void()> again = [&] {
        if (!ended) player->scheduleFile(file.value(), std::nullopt, again);
    };
    again();
    if (engine->start()) return 1;
    player->play();
    long worst = 0;
    for (long pass = 0; pass < passes && worst >= 0; ++pass) {
        const long off = framesOff(device->render(reference.size() / 2), reference);
        worst = off < 0 ? off : std::max(worst, off);
    }
    ended = true;
    player->stop();
    engine->stop();
    std::printf("%ld\n", worst);
    return 0;
}

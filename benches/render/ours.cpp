// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Renders a looped file through an LV2 effect as the application plays it, on the offline device.
// Usage: bench_render_ours FILE PLUGIN_URI BLOCK_FRAMES SECONDS [OUTPUT]      OUTPUT: interleaved floats, raw
#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"
#include "platform/audio/OfflineDevice.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/effects/ComponentProvider.hpp"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

using namespace platform;

namespace {

void writeInterleaved(std::FILE* output, const std::vector<float>& left, const std::vector<float>& right,
                      std::vector<float>& both) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        both[2 * i] = left[i];
        both[2 * i + 1] = right[i];
    }
    std::fwrite(both.data(), sizeof(float), both.size(), output);
}

int failure(const std::string& sentence) {
    std::fprintf(stderr, "%s\n", sentence.c_str());
    return 1;
}

} // namespace

int main(int count, char** arguments) {
    if (count < 5) return failure("usage: bench_render_ours FILE PLUGIN_URI BLOCK_FRAMES SECONDS [OUTPUT]");
    const auto file = AVAudioFile::open(URL::fileURLWithPath(arguments[1]));
    if (!file) return failure(file.error().localizedDescription());
    ComponentRecord record;
    record.identifier = arguments[2];
    const auto unit = makeLv2ComponentProvider()->instantiate(record);
    if (!unit) return failure(unit.error().localizedDescription());
    const auto block = static_cast<std::uint32_t>(std::strtoul(arguments[3], nullptr, 10));
    const AVAudioFormat format{file.value()->processingFormat().sampleRate, 2};

    const auto device = std::make_shared<OfflineDevice>(format, block);
    const auto engine = AVAudioEngine::create(device);
    const auto player = AVAudioPlayerNode::create();
    const auto effect = std::make_shared<AVAudioUnit>(unit.value());
    engine->attachNode(player);
    engine->attachNode(effect);
    engine->connect(player, effect, std::nullopt);
    engine->connect(effect, engine->mainMixerNode(), std::nullopt);

    std::atomic<bool> ended{false};
    std::function<void()> again = [&] {
        if (!ended) player->scheduleFile(file.value(), std::nullopt, again);
    };
    again();
    if (const auto error = engine->start()) return failure(error->localizedDescription());
    player->play();

    std::FILE* output = count > 5 ? std::fopen(arguments[5], "wb") : nullptr;
    constexpr std::size_t Piece = 8192;
    std::vector<float> left(Piece);
    std::vector<float> right(Piece);
    std::vector<float> both(2 * Piece);
    float* const planes[] = {left.data(), right.data()};
    const auto pieces = static_cast<std::size_t>(std::atof(arguments[4]) * format.sampleRate) / Piece;
    for (std::size_t i = 0; i < pieces; ++i) {
        if (const auto error = device->render(planes, Piece)) return failure(error->localizedDescription());
        if (output != nullptr) writeInterleaved(output, left, right, both);
    }
    if (output != nullptr) std::fclose(output);
    ended = true;
    player->stop();
    engine->stop();
    return 0;
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Counts the blocks that are missing in the time between the first and the last block that the sound server
// requested, and those that were heard without the effect.
#include "Track.hpp"
#include "measurements.hpp"

#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/AVAudioNode.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"

#include <algorithm>
#include <atomic>
#include <functional>

namespace bench {
namespace {

using namespace platform;

// Passes everything to an effect and watches the blocks. All figures are written by the audio thread.
class Watched final : public NodeProcessor {
  public:
    explicit Watched(std::shared_ptr<NodeProcessor> effect)
        : _effect(std::move(effect)) {}
    [[nodiscard]] std::uint32_t inputChannels() const noexcept override { return _effect->inputChannels(); }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override { return _effect->outputChannels(); }
    void setBlockFrames(std::uint32_t frames) override { _effect->setBlockFrames(frames); }
    void setOffline(bool isOffline) override { _effect->setOffline(isOffline); }
    [[nodiscard]] std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) override {
        return _effect->allocate(sampleRate, maximumFrames);
    }
    void release() noexcept override { _effect->release(); }
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override { return _effect->latencyFrames(); }
    void process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept override {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        _effect->process(inputs, outputs, sampleTime);
        if (isSettled) {
            if (first == 0) first = now;
            last = now;
            played += outputs.frames();
            blockFrames = outputs.frames();
            // The bundled effect has no latency, and the preset changes every sound but silence.
            const bool isSilent =
                std::all_of(inputs[0], inputs[0] + inputs.frames(), [](float x) { return x == 0; });
            if (!isSilent && std::equal(inputs[0], inputs[0] + inputs.frames(), outputs[0])) ++dry;
        }
    }

    std::atomic<bool> isSettled{false};
    std::atomic<std::int64_t> first{0}, last{0}; // nanoseconds
    std::atomic<std::int64_t> played{0}, blockFrames{0}, dry{0};

  private:
    const std::shared_ptr<NodeProcessor> _effect;
};

class WatchedNode final : public AVAudioNode {
  public:
    explicit WatchedNode(std::shared_ptr<Watched> watched)
        : _watched(std::move(watched)) {}
    [[nodiscard]] std::shared_ptr<NodeProcessor> processor() const override { return _watched; }

  private:
    const std::shared_ptr<Watched> _watched;
};

} // namespace

bool measureServer(const std::string& path, double seconds) {
    const auto file = AVAudioFile::open(URL::fileURLWithPath(path));
    if (!file) return false;
    const char* where = std::getenv("TONEWRIGHT_EFFECT_PROCESS");
    const bool isOwn = where != nullptr && std::string_view(where) == "own";
    const auto unit = makeUnit(BundledEffect, isOwn ? Where::OwnProcess : Where::InProcess);
    const auto watched = std::make_shared<Watched>(unit->processor());
    const auto node = std::make_shared<WatchedNode>(watched);
    const auto engine = AVAudioEngine::create();
    const auto player = AVAudioPlayerNode::create();
    engine->attachNode(player);
    engine->attachNode(node);
    engine->connect(player, node, std::nullopt);
    engine->connect(node, engine->mainMixerNode(), std::nullopt);
    std::atomic<bool> ended{false};
    std::function<void()> again = [&] {
        if (!ended) player->scheduleFile(file.value(), std::nullopt, again);
    };
    again();
    if (engine->start()) return false;
    player->play();
    std::this_thread::sleep_for(
        std::chrono::seconds(2)); // the server has settled, and the standby process runs
    watched->isSettled = true;
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    watched->isSettled = false;
    ended = true;
    player->stop();
    engine->stop();
    if (watched->played == 0) return false;
    const double block = static_cast<double>(watched->blockFrames);
    const double due = static_cast<double>(watched->last - watched->first) * 1e-9 * Rate / block + 1;
    std::printf("block_frames %.0f\nblocks %.1f\nlost_blocks %ld\ndry_blocks %ld\n", block, due,
                std::lround(due - static_cast<double>(watched->played) / block),
                static_cast<long>(watched->dry));
    return true;
}

} // namespace bench

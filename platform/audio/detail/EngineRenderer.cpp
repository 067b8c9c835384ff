// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/EngineRenderer.hpp"

#include "platform/audio/NodeProcessor.hpp"
#include "platform/audio/detail/PlayerStream.hpp"
#include "platform/realtime/DenormalScope.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <thread>

namespace platform {

EngineRenderer::EngineRenderer(bool offline, std::shared_ptr<WakeSignal> news,
                               std::function<void()> onFormatChange)
    : _offline(offline)
    , _news(std::move(news))
    , _onFormatChange(std::move(onFormatChange)) {
    _shared.entrance.open();
}

EngineRenderer::~EngineRenderer() {
    const std::unique_ptr<RenderPlan> last(_shared.plan.load());
}

// --- the control side

void EngineRenderer::reset(std::uint32_t frames) {
    _shared.sampleTime = 0;
    _failure.reset();
    _shared.stopping = std::stop_source();
    _shared.blockLength.reset(frames);
}

std::optional<EngineRenderer::Retired> EngineRenderer::publish(std::unique_ptr<RenderPlan> plan,
                                                               std::chrono::nanoseconds limit) {
    std::unique_ptr<RenderPlan> former(_shared.plan.exchange(plan.release()));
    if (!former) return std::nullopt;
    const auto end = std::chrono::steady_clock::now() + limit;
    while (_shared.inUse.load() == former.get()) {
        if (std::chrono::steady_clock::now() >= end) {
            std::shared_ptr<NodeProcessor> inside = former->retire();
            _graveyard.push_back({std::move(former), inside});
            return Retired{std::move(inside)};
        }
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
    return std::nullopt;
}

std::vector<std::shared_ptr<NodeProcessor>> EngineRenderer::emptyGraveyard() {
    std::vector<std::shared_ptr<NodeProcessor>> returned;
    std::erase_if(_graveyard, [&](Grave& grave) {
        if (_shared.inUse.load() == grave.plan.get()) return false;
        if (grave.inside) returned.push_back(std::move(grave.inside));
        return true;
    });
    return returned;
}

bool EngineRenderer::keeps(const NodeProcessor* processor) const noexcept {
    return std::ranges::any_of(_graveyard,
                               [processor](const Grave& grave) { return grave.inside.get() == processor; });
}

// --- the audio side

RenderPlan* EngineRenderer::acquirePlan() noexcept {
    RenderPlan* plan = _shared.plan.load();
    while (true) { // repeats only if the control side exchanges the plan concurrently
        _shared.inUse.store(plan);
        RenderPlan* const now = _shared.plan.load();
        if (now == plan) return plan;
        plan = now;
    }
}

// Waits until the players have decoded `frames` frames (offline only). Releases `plan` while waiting, because
// the control side waits for plans in use. Returns the plan that is current afterwards.
RenderPlan* EngineRenderer::provide(RenderPlan* plan, std::uint32_t frames) {
    const auto isReady = [frames](const auto& player) { return player->isProvided(frames); };
    if (plan == nullptr || std::ranges::all_of(plan->players(), isReady)) return plan;
    const std::vector<std::shared_ptr<PlayerStream>> players = plan->players();
    releasePlan();
    for (const auto& player : players) player->provide(frames, _shared.stopping.get_token());
    return acquirePlan();
}

// Offline only: allocates.
void EngineRenderer::noteFailure(const RenderPlan& plan) {
    const NodeProcessor* const failed = plan.failed();
    if (failed == nullptr || _failure) return;
    _failure = Error("AudioOutput", 2,
                     "The effect \"" + failed->name() +
                         "\" has ended while it was rendering; the sound is not complete.");
}

void EngineRenderer::renderPiece(PlanarSound sound, double sampleRate) noexcept {
    RenderPlan* plan = acquirePlan();
    if (_offline) plan = provide(plan, sound.frames());
    {
        const RealtimeScope realtime;
        if (plan != nullptr && plan->format() == AVAudioFormat{sampleRate, sound.channels()}) {
            const std::int64_t now = _shared.sampleTime.load(std::memory_order_relaxed);
            const bool isNewLength = !_offline && _shared.blockLength.note(sound.frames());
            if (plan->render(sound, now) || isNewLength) _news->signal();
            _shared.sampleTime.store(now + sound.frames(), std::memory_order_relaxed);
        } else { // the format has changed, and the control side will publish a new plan
            fillWithSilence(sound);
        }
    }
    if (_offline && plan != nullptr) noteFailure(*plan);
    releasePlan();
}

void EngineRenderer::render(PlanarSound sound, double sampleRate) noexcept {
    const DenormalScope noDenormals;
    const Gate::Passage inside = _shared.entrance.enter();
    if (!inside) return fillWithSilence(sound);
    const std::uint32_t longest = RenderPlan::maximumFrames(sampleRate, _offline);
    while (sound.frames() > 0) {
        const std::uint32_t count = std::min(sound.frames(), longest);
        renderPiece(sound.first(count), sampleRate);
        sound = sound.after(count);
    }
}

} // namespace platform

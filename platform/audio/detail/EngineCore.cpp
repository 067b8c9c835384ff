// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/EngineCore.hpp"

#include "platform/audio/AVAudioOutputNode.hpp"
#include "platform/audio/detail/PlayerStream.hpp"
#include "platform/foundation/console.hpp"
#include "platform/realtime/DenormalScope.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <chrono>

namespace platform {

EngineCore::EngineCore(std::shared_ptr<OutputDevice> device, NodePointer mainMixer, NodePointer output)
    : _device(std::move(device))
    , _offline(_device->isOffline())
    , _graph(std::move(mainMixer), std::move(output)) {}

// --- the control side

void EngineCore::attach(const NodePointer& node) {
    const std::scoped_lock lock(_mutex);
    if (node && !_graph.attach(node)) warn("A node of another audio engine can't be attached.");
}

void EngineCore::detach(const NodePointer& node) {
    const std::scoped_lock lock(_mutex);
    if (!node || !_graph.holds(*node)) return;
    if (_graph.unlink(*node)) graphDidChange();
    _graph.detach(*node);
}

void EngineCore::connect(const NodePointer& from, const NodePointer& to,
                         std::optional<AVAudioFormat> format) {
    const std::scoped_lock lock(_mutex);
    if (!from || !to || !_graph.holds(*from) || !_graph.holds(*to)) {
        warn("A node that isn't attached to the audio engine can't be connected.");
        return;
    }
    // The output's own format is no wish: such a link follows the output when that becomes another.
    if (format == _device->format() && dynamic_cast<const AVAudioOutputNode*>(to.get()) != nullptr) {
        format.reset();
    }
    _graph.connect(*from, *to, format);
    graphDidChange();
}

void EngineCore::disconnectInput(const NodePointer& node) {
    const std::scoped_lock lock(_mutex);
    if (node && _graph.disconnectInput(*node)) graphDidChange();
}

void EngineCore::prepare() {
    const std::scoped_lock lock(_mutex);
    if (_ended || _planIsCurrent) return;
    if (!_running) expectBlocks();
    rebuild();
}

std::optional<Error> EngineCore::start() {
    const std::scoped_lock lock(_mutex);
    if (_running || _ended) return std::nullopt;
    if (!_watcher.joinable()) _watcher = std::thread([this] { watch(); });
    _shared.sampleTime = 0;
    _shared.stopping = std::stop_source();
    expectBlocks();
    if (!_planIsCurrent || _planFormat != _device->format()) rebuild();
    if (auto error = _device->start(shared_from_this())) return error;
    _running = true;
    if (_planFormat != _device->format()) rebuild(); // starting may tell what the device really is
    return std::nullopt;
}

void EngineCore::stop() {
    const std::scoped_lock lock(_mutex);
    if (!_running) return;
    _shared.stopping.request_stop();
    _device->stop();
    _running = false;
}

// Before the first block the device's word is all there is. _mutex is held.
void EngineCore::expectBlocks() {
    const std::uint32_t frames = std::min(_device->blockFrames(), RenderPlan::MaximumFrames);
    _shared.blockLength.reset(frames);
    _graph.setBlockFrames(frames);
}

bool EngineCore::isRunning() const {
    const std::scoped_lock lock(_mutex);
    return _running;
}

void EngineCore::shutDown() {
    stop();
    {
        const std::scoped_lock lock(_mutex);
        _ended = true;
        publish(nullptr);
        _shared.news.signal();
    }
    if (_watcher.joinable()) _watcher.join();
}

// A stopped engine builds its plan when it is next prepared or started. _mutex is held.
void EngineCore::graphDidChange() {
    if (_running) {
        rebuild();
    } else {
        publish(nullptr);
        _planIsCurrent = false;
    }
}

// _mutex is held.
void EngineCore::rebuild() {
    const AVAudioFormat format = _device->format();
    if (format.sampleRate != _planFormat.sampleRate) {
        publish(nullptr); // processors begin anew: none may be in use
    }
    publish(_graph.compile(format, _offline));
    _planFormat = format;
    _planIsCurrent = true;
}

// Have the audio side run `plan` and free the former one. _mutex is held.
void EngineCore::publish(std::unique_ptr<RenderPlan> plan) {
    const std::unique_ptr<RenderPlan> former(_shared.plan.exchange(plan.release()));
    if (!former) return;
    while (_shared.inUse.load() == former.get()) std::this_thread::sleep_for(std::chrono::microseconds(50));
}

void EngineCore::outputFormatDidChange() {
    _control.async([weakSelf = weak_from_this()] {
        const auto self = weakSelf.lock();
        if (!self) return;
        const std::scoped_lock lock(self->_mutex);
        if (self->_running && self->_planFormat != self->_device->format()) self->rebuild();
    });
}

void EngineCore::watch() {
    while (true) {
        _shared.news.wait();
        const std::scoped_lock lock(_mutex);
        _graph.reportBadSamples();
        if (_ended) return;
        if (_running) _graph.setBlockFrames(_shared.blockLength.usual());
    }
}

// --- the audio side

RenderPlan* EngineCore::acquirePlan() noexcept {
    RenderPlan* plan = _shared.plan.load();
    while (true) { // again only if the control side exchanged the plan at this very moment
        _shared.inUse.store(plan);
        RenderPlan* const now = _shared.plan.load();
        if (now == plan) return plan;
        plan = now;
    }
}

// Offline there is time to wait for what is to be rendered; the plan must not be held meanwhile.
void EngineCore::provide(std::uint32_t frames) {
    std::vector<std::shared_ptr<PlayerStream>> players;
    const auto isReady = [frames](const auto& player) { return player->isProvided(frames); };
    if (const RenderPlan* plan = acquirePlan();
        plan != nullptr && !std::ranges::all_of(plan->players(), isReady)) {
        players = plan->players();
    }
    releasePlan();
    for (const auto& player : players) player->provide(frames, _shared.stopping.get_token());
}

void EngineCore::render(float* const* planes, const AVAudioFormat& format, std::uint32_t frames) noexcept {
    const DenormalScope noDenormals;
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t count = std::min(frames - done, RenderPlan::MaximumFrames);
        if (_offline) provide(count);
        const RealtimeScope realtime;
        RenderPlan* plan = acquirePlan();
        if (plan != nullptr && plan->format() == format) {
            const std::int64_t now = _shared.sampleTime.load(std::memory_order_relaxed);
            const bool isNewLength = !_offline && _shared.blockLength.note(count);
            if (plan->render(planes, done, count, now) || isNewLength) {
                _shared.news.signal();
            }
            _shared.sampleTime.store(now + count, std::memory_order_relaxed);
        } else { // the control side is about to follow a change of the device
            for (std::uint32_t c = 0; c < format.channelCount; ++c) {
                std::fill_n(planes[c] + done, count, 0.0F);
            }
        }
        releasePlan();
        done += count;
    }
}

} // namespace platform

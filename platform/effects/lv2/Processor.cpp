// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/Processor.private.hpp"

#include "platform/audio/RealtimeScope.hpp"

#include <algorithm>

namespace platform::lv2 {
namespace {

// Until the engine says otherwise.
constexpr double FirstRate = 48000;
constexpr std::uint32_t FirstFrames = 1024;

} // namespace

Processor::Processor(std::shared_ptr<World> world, Plugin plugin, bool isOurs)
    : _world(std::move(world))
    , _plugin(std::move(plugin))
    , _isOurs(isOurs)
    , _buffers(_plugin.ports) {
    const bool sendsMidi = std::any_of(_plugin.ports.begin(), _plugin.ports.end(), [](const Port& port) {
        return port.kind == PortKind::AtomOutput && port.supportsMidi;
    });
    if (sendsMidi) _midi = std::make_unique<MIDIOutputDelivery>(_plugin.name);
}

Processor::~Processor() = default;

Result<std::shared_ptr<Processor>> Processor::make(std::shared_ptr<World> world, Plugin plugin, bool isOurs) {
    std::shared_ptr<Processor> processor(new Processor(std::move(world), std::move(plugin), isOurs));
    if (auto failure = processor->makeInstance(FirstRate, FirstFrames)) return *failure;
    if (processor->_plugin.wantsDefaultState) processor->loadDefaultState();
    return processor;
}

std::optional<Error> Processor::makeInstance(double sampleRate, std::uint32_t nominalFrames) {
    auto made = Instance::make(_world, _plugin, sampleRate, nominalFrames, _buffers.sequenceBytes());
    if (!made) return made.error();
    _buffers.connect(made.value()->get());
    _instance = std::move(made.value());
    return std::nullopt;
}

double Processor::sampleRate() const {
    const std::scoped_lock lock(_instanceMutex);
    return _instance->sampleRate();
}

std::optional<Error> Processor::allocate(double sampleRate, std::uint32_t maximumFrames) {
    const std::scoped_lock lock(_instanceMutex);
    if (_instance->sampleRate() != sampleRate) {
        const State state = captureState();
        _instance->deactivate();
        if (auto failure = makeInstance(sampleRate, std::min(maximumFrames, LongestBlock))) return failure;
        if (state) applyState(*state);
    }
    _instance->activate();
    return std::nullopt;
}

void Processor::release() noexcept {
    const std::scoped_lock lock(_instanceMutex);
    _instance->deactivate();
}

void Processor::process(const float* const* inputs, float* const* outputs, std::uint32_t frames,
                        std::int64_t sampleTime) noexcept {
    if (!_instance->isActive() || !_gate.tryEnter()) {
        for (std::uint32_t channel = 0; channel < outputChannels(); ++channel)
            std::fill_n(outputs[channel], frames, 0.0F);
        return;
    }
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t piece = std::min(frames - done, LongestBlock);
        _buffers.beforeRun();
        _buffers.connectAudio(_instance->get(), inputs, outputs, done);
        run(piece, sampleTime + done);
        done += piece;
    }
    if (_midi) _midi->flush();
    _gate.leave();
}

void Processor::run(std::uint32_t frames, std::int64_t sampleTime) noexcept {
    {
        std::optional<ForeignCodeScope> foreign;
        if (!_isOurs) foreign.emplace();
        lilv_instance_run(_instance->get(), frames);
        _instance->worker().deliverResponses();
    }
    _buffers.afterRun(sampleTime, frames, _midi.get());
}

} // namespace platform::lv2

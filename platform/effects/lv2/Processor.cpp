// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/Processor.hpp"

#include "platform/foundation/console.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>

namespace platform::lv2 {
namespace {

// For the first instance, for which only a background task waits.
constexpr std::chrono::seconds FirstLimit{5};

} // namespace

Processor::Processor(std::shared_ptr<World> world, Plugin plugin, bool isOurs, double sampleRate,
                     std::uint32_t blockFrames)
    : _world(std::move(world))
    , _plugin(std::move(plugin))
    , _isOurs(isOurs)
    , _buffers(std::make_shared<PortBuffers>(_plugin.ports, sampleRate))
    , _sampleRate(sampleRate)
    , _keeper(_plugin, _buffers)
    , _blockFrames(std::clamp(blockFrames, 1U, LongestBlock)) {
    const bool sendsMidi = std::any_of(_plugin.ports.begin(), _plugin.ports.end(), [](const Port& port) {
        return port.kind == PortKind::AtomOutput && port.supportsMidi;
    });
    if (sendsMidi) _midi = std::make_unique<MIDIOutputDelivery>(_plugin.name);
    _gate.open();
}

Processor::~Processor() {
    if (const auto failure = _keeper.drop(Deadline(ControlLimit))) warn(failure->localizedDescription());
}

Result<std::shared_ptr<Processor>> Processor::make(std::shared_ptr<World> world, Plugin plugin, bool isOurs,
                                                   double sampleRate, std::uint32_t blockFrames) {
    if (auto failure = refusal(plugin)) return *failure;
    std::shared_ptr<Processor> processor(
        new Processor(std::move(world), std::move(plugin), isOurs, sampleRate, blockFrames));
    if (auto failure = processor->_keeper.make(processor->setup(), Deadline(FirstLimit))) return *failure;
    if (processor->_plugin.wantsDefaultState) processor->loadDefaultState();
    return processor;
}

Instance::Setup Processor::setup() const {
    return {.sampleRate = _sampleRate,
            .blockFrames = _blockFrames,
            .sequenceBytes = _buffers->events.sequenceBytes()};
}

// A longer block is split. A plug-in that was told of no other length does not expect a shorter one.
bool Processor::suitsBlocks(const Instance& instance) const noexcept {
    return instance.takesBlockFrames() || _blockFrames >= instance.blockFrames();
}

Error Processor::doesNotReturn() const {
    return unusable(_plugin, "it has not returned from rendering in " + std::to_string(ControlLimit.count()) +
                                 " seconds");
}

void Processor::setBlockFrames(std::uint32_t frames) {
    const std::scoped_lock lock(_instanceMutex);
    _blockFrames = std::clamp(frames, 1U, LongestBlock);
    Instance* instance = _keeper.get();
    if (instance == nullptr || !instance->takesBlockFrames()) return;
    if (instance->blockFrames() == std::min(_blockFrames, instance->longestBlockFrames())) return;
    // An effect that does not return from rendering is told when it is allocated again.
    if (const Gate::Closure closed(_gate); closed) instance->setBlockFrames(_blockFrames);
}

void Processor::setOffline(bool isOffline) {
    const std::scoped_lock lock(_instanceMutex);
    _isOffline = isOffline;
    if (Instance* instance = _keeper.get()) instance->worker().setOffline(isOffline);
}

std::optional<Error> Processor::allocate(double sampleRate, std::uint32_t maximumFrames) {
    if (maximumFrames < _blockFrames) setBlockFrames(maximumFrames);
    const std::scoped_lock lock(_instanceMutex);
    Instance* instance = _keeper.get();
    const bool isKept = instance != nullptr && instance->sampleRate() == sampleRate && suitsBlocks(*instance);
    if (isKept && instance->isActive()) return std::nullopt;
    const Deadline deadline(ControlLimit);
    const Gate::Closure closed(_gate);
    if (!closed) return doesNotReturn();
    if (instance != nullptr && !isKept) {
        _kept = captureState();
        if (auto failure = _keeper.drop(deadline)) return failure;
    }
    if (!isKept) {
        _sampleRate = sampleRate;
        if (auto failure = _keeper.make(setup(), deadline)) return failure;
        _keeper.get()->worker().setOffline(_isOffline);
        if (_kept.state) restore(*_kept.state);
        _kept = {};
        _buffers->controls.limitValues(_plugin.ports, sampleRate);
    } else if (instance->blockFrames() != _blockFrames) {
        instance->setBlockFrames(_blockFrames);
    }
    return _keeper.activate(deadline);
}

void Processor::release() noexcept {
    const std::scoped_lock lock(_instanceMutex);
    std::optional<Error> failure;
    if (const Gate::Closure closed(_gate); closed) {
        failure = _keeper.deactivate(Deadline(ControlLimit));
    } else {
        failure = doesNotReturn();
    }
    if (failure) warn(failure->localizedDescription());
}

void Processor::process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept {
    const Gate::Passage inside = _gate.enter();
    Instance* const instance = inside ? _keeper.get() : nullptr;
    if (instance == nullptr || !instance->isActive()) return fillWithSilence(outputs);
    for (std::uint32_t done = 0; done < outputs.frames();) {
        const std::uint32_t piece = std::min(outputs.frames() - done, instance->blockFrames());
        const PlanarSound out = outputs.after(done).first(piece);
        _buffers->beforeRun();
        _buffers->audio.connectSignal(instance->get(), inputs.after(done).first(piece), out,
                                      instance->blockFrames());
        run(*instance, piece, sampleTime + done);
        _buffers->audio.takeSignal(out);
        done += piece;
    }
    if (_midi) _midi->flush();
}

void Processor::run(Instance& instance, std::uint32_t frames, std::int64_t sampleTime) noexcept {
    {
        std::optional<ForeignCodeScope> foreign;
        if (!_isOurs) foreign.emplace();
        lilv_instance_run(instance.get(), frames);
        instance.worker().deliverResponses();
    }
    _buffers->afterRun(sampleTime, frames, _midi.get());
}

} // namespace platform::lv2

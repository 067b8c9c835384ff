// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/Processor.hpp"

#include "platform/effects/lv2/UridMap.hpp"
#include "platform/effects/lv2/requirements.hpp"
#include "platform/foundation/console.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform::lv2 {
namespace {

// The time limit for creating the first instance. Longer than ControlLimit, because only a background task
// waits.
constexpr std::chrono::seconds FirstLimit{5};

} // namespace

Processor::Processor(std::shared_ptr<World> world, Plugin plugin, bool isOurs, double sampleRate,
                     std::uint32_t blockFrames)
    : _world(std::move(world))
    , _plugin(std::make_shared<const Plugin>(std::move(plugin)))
    , _isOurs(isOurs)
    , _buffers(std::make_shared<PortBuffers>(_plugin->ports, sampleRate))
    , _sampleRate(sampleRate)
    , _keeper(_plugin, _buffers)
    , _blockFrames(std::clamp(blockFrames, 1U, LongestBlock)) {
    const bool sendsMidi = std::any_of(_plugin->ports.begin(), _plugin->ports.end(), [](const Port& port) {
        return port.kind == PortKind::AtomOutput && port.supportsMidi;
    });
    if (sendsMidi) _midi = std::make_unique<MIDIOutputDelivery>(_plugin->name);
    _midiSink = _midi.get();
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
    const Deadline deadline(FirstLimit);
    if (auto failure = processor->_keeper.make(processor->setup(), deadline)) return *failure;
    if (processor->_plugin->wantsDefaultState) {
        if (auto failure = processor->loadDefaultState(deadline)) return *failure;
    }
    return processor;
}

Instance::Setup Processor::setup() const {
    return {.sampleRate = _sampleRate,
            .blockFrames = _blockFrames,
            .sequenceBytes = _buffers->events.sequenceBytes()};
}

// Returns whether `instance` can be used with the current block length. Blocks longer than the instance's
// length are split, but a plug-in that does not accept changes of the length may not support shorter blocks.
bool Processor::suitsBlocks(const Instance& instance) const noexcept {
    return instance.takesBlockFrames() || _blockFrames >= instance.blockFrames();
}

Error Processor::doesNotReturn() const {
    return unusable(*_plugin, "it has not returned from rendering in " +
                                  std::to_string(ControlLimit.count()) + " seconds");
}

void Processor::setBlockFrames(std::uint32_t frames) {
    std::optional<Error> failure;
    {
        const std::scoped_lock lock(_instanceMutex);
        _blockFrames = std::clamp(frames, 1U, LongestBlock);
        const Instance* instance = _keeper.get();
        if (instance == nullptr || !instance->differsFrom(_blockFrames)) return;
        // An effect that has not returned from rendering gets the new length when it is next allocated.
        const Deadline deadline(ControlLimit);
        const Gate::Closure closed(_gate);
        if (closed) failure = _keeper.setBlockFrames(_blockFrames, deadline);
    }
    if (failure) warn(failure->localizedDescription());
}

void Processor::setOffline(bool isOffline) {
    const std::scoped_lock lock(_instanceMutex);
    _isOffline = isOffline;
    if (Instance* instance = _keeper.get()) instance->worker().setOffline(isOffline);
}

std::optional<Error> Processor::allocate(double sampleRate, std::uint32_t maximumFrames) {
    const std::scoped_lock lock(_instanceMutex);
    _blockFrames = std::clamp(maximumFrames, 1U, _blockFrames);
    const Instance* instance = _keeper.get();
    const bool isKept = instance != nullptr && instance->sampleRate() == sampleRate && suitsBlocks(*instance);
    if (isKept && instance->isActive() && !instance->differsFrom(_blockFrames)) return std::nullopt;
    if (auto failure = _keeper.stuck()) return failure;
    const Deadline deadline(ControlLimit);
    const Gate::Closure closed(_gate);
    if (!closed) return doesNotReturn();
    if (instance != nullptr && !isKept) {
        auto captured = captureState(deadline);
        if (!captured) return captured.error();
        _kept = std::move(captured.value());
        if (auto failure = _keeper.drop(deadline)) return failure;
    }
    if (!isKept) {
        _sampleRate = sampleRate;
        if (auto failure = _keeper.make(setup(), deadline)) return failure;
        _keeper.get()->worker().setOffline(_isOffline);
        if (const State kept = std::exchange(_kept, {}).state) {
            if (auto failure = restore(kept, InstanceKeeper::DuringRun::Excluded, deadline)) return failure;
        }
        _buffers->controls.limitValues(_plugin->ports, sampleRate);
    } else if (instance->differsFrom(_blockFrames)) {
        if (auto failure = _keeper.setBlockFrames(_blockFrames, deadline)) return failure;
    }
    return _keeper.activate(deadline);
}

void Processor::release() noexcept {
    std::optional<Error> failure;
    {
        const std::scoped_lock lock(_instanceMutex);
        if (const Gate::Closure closed(_gate); closed) {
            failure = _keeper.deactivate(Deadline(ControlLimit));
        } else {
            failure = doesNotReturn();
        }
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
    if (_midiSink != nullptr) _midiSink->flush();
}

bool Processor::sendMidi(std::uint32_t port, std::span<const std::uint8_t> message) {
    const LV2_Atom head{static_cast<std::uint32_t>(message.size()), Urids::shared().midiEvent};
    std::vector<std::byte> atom(sizeof head + message.size());
    std::memcpy(atom.data(), &head, sizeof head);
    std::memcpy(atom.data() + sizeof head, message.data(), message.size());
    return sendAtom(port, atom);
}

void Processor::run(Instance& instance, std::uint32_t frames, std::int64_t sampleTime) noexcept {
    {
        std::optional<ForeignCodeScope> foreign;
        if (!_isOurs) foreign.emplace();
        lilv_instance_run(instance.get(), frames);
        instance.worker().deliverResponses();
    }
    _buffers->afterRun(sampleTime, frames, _midiSink);
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/Processor.private.hpp"

#include "platform/effects/lv2/runApart.private.hpp"
#include "platform/foundation/console.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>

namespace platform::lv2 {
namespace {

constexpr std::chrono::seconds FirstLimit{
    5};                                  // for the first instance, for which only a background task waits
constexpr std::chrono::seconds Limit{2}; // where the engine, and perhaps the screen, waits

} // namespace

Processor::Processor(std::shared_ptr<World> world, Plugin plugin, bool isOurs, double sampleRate,
                     std::uint32_t blockFrames)
    : _world(std::move(world))
    , _plugin(std::move(plugin))
    , _isOurs(isOurs)
    , _buffers(std::make_shared<PortBuffers>(_plugin.ports, sampleRate))
    , _sampleRate(sampleRate)
    , _blockFrames(std::clamp(blockFrames, 1U, LongestBlock)) {
    const bool sendsMidi = std::any_of(_plugin.ports.begin(), _plugin.ports.end(), [](const Port& port) {
        return port.kind == PortKind::AtomOutput && port.supportsMidi;
    });
    if (sendsMidi) _midi = std::make_unique<MIDIOutputDelivery>(_plugin.name);
}

Processor::~Processor() {
    if (const auto failure = dropInstance()) warn(failure->localizedDescription());
}

Result<std::shared_ptr<Processor>> Processor::make(std::shared_ptr<World> world, Plugin plugin, bool isOurs,
                                                   double sampleRate, std::uint32_t blockFrames) {
    if (auto failure = refusal(plugin)) return *failure;
    std::shared_ptr<Processor> processor(
        new Processor(std::move(world), std::move(plugin), isOurs, sampleRate, blockFrames));
    if (auto failure = processor->makeInstance(FirstLimit)) return *failure;
    if (processor->_plugin.wantsDefaultState) processor->loadDefaultState();
    return processor;
}

// Waits for a call into the plug-in. One that does not return in time goes on by itself, with all that it
// uses; no other instance is made beside it.
std::optional<Error> Processor::awaitPlugin(std::shared_future<void> call, std::chrono::seconds limit,
                                            const std::string& doing) {
    if (call.wait_for(limit) == std::future_status::ready) return std::nullopt;
    _stuck = std::move(call);
    return unusable(_plugin, "it has not returned from " + doing + " in " + std::to_string(limit.count()) +
                                 " seconds");
}

std::optional<Error> Processor::makeInstance(std::chrono::seconds limit) {
    if (_stuck.valid() && _stuck.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        return unusable(_plugin, "it still has not returned from an earlier call");
    }
    struct Attempt {
        Plugin plugin;
        std::shared_ptr<Instance> instance;
        std::optional<Error> failure;
    };
    const auto attempt = std::make_shared<Attempt>(Attempt{_plugin, nullptr, std::nullopt});
    attempt->instance =
        std::make_shared<Instance>(Instance::Setup{_sampleRate, _blockFrames, _buffers->sequenceBytes()});
    auto call = runApart([attempt] { attempt->failure = attempt->instance->load(attempt->plugin); });
    if (auto failure = awaitPlugin(std::move(call), limit, "making an instance of itself")) return failure;
    if (attempt->failure) return attempt->failure;
    _instance = std::move(attempt->instance);
    _buffers->connect(_instance->get());
    return std::nullopt;
}

std::optional<Error> Processor::dropInstance() {
    if (!_instance) return std::nullopt;
    // The ports are connected to the buffers, so these live as long.
    auto call =
        runApart([instance = std::move(_instance), buffers = _buffers]() mutable { instance.reset(); });
    return awaitPlugin(std::move(call), Limit, "ending an instance of itself");
}

// A longer block is cut. A shorter one is not what a plug-in expects that was told of no other.
bool Processor::suitsBlocks() const noexcept {
    return _instance->takesBlockFrames() || _blockFrames >= _instance->blockFrames();
}

void Processor::setBlockFrames(std::uint32_t frames) {
    const std::scoped_lock lock(_instanceMutex);
    _blockFrames = std::clamp(frames, 1U, LongestBlock);
    if (!_instance || !_instance->takesBlockFrames() || _instance->blockFrames() == _blockFrames) return;
    const RunGate::Closed closed(_gate);
    _instance->setBlockFrames(_blockFrames);
}

std::optional<Error> Processor::allocate(double sampleRate, std::uint32_t maximumFrames) {
    if (maximumFrames < _blockFrames) setBlockFrames(maximumFrames);
    const std::scoped_lock lock(_instanceMutex);
    if (_instance && (_instance->sampleRate() != sampleRate || !suitsBlocks())) {
        _kept = captureState();
        if (auto failure = dropInstance()) return failure;
    }
    if (!_instance) {
        _sampleRate = sampleRate;
        if (auto failure = makeInstance(Limit)) return failure;
        if (_kept) applyState(*_kept);
        _kept.reset();
        _buffers->limitValues(_plugin.ports, sampleRate);
    }
    _instance->activate();
    return std::nullopt;
}

void Processor::release() noexcept {
    const std::scoped_lock lock(_instanceMutex);
    if (_instance) _instance->deactivate();
}

void Processor::process(const float* const* inputs, float* const* outputs, std::uint32_t frames,
                        std::int64_t sampleTime) noexcept {
    if (!_instance || !_instance->isActive() || !_gate.tryEnter()) {
        for (std::uint32_t channel = 0; channel < outputChannels(); ++channel) {
            std::fill_n(outputs[channel], frames, 0.0F);
        }
        return;
    }
    for (std::uint32_t done = 0; done < frames;) {
        const std::uint32_t piece = std::min(frames - done, _instance->blockFrames());
        _buffers->beforeRun();
        _buffers->connectAudio(_instance->get(), inputs, outputs, done, piece, _instance->blockFrames());
        run(piece, sampleTime + done);
        _buffers->takeAudio(outputs, done, piece);
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
    _buffers->afterRun(sampleTime, frames, _midi.get());
}

} // namespace platform::lv2

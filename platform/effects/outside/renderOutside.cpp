// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The audio side of OutsideProcessor: lets a process render each block. If the process fails, uses the spare
// or the delayed input.
#include "platform/effects/outside/OutsideProcessor.hpp"
#include "platform/realtime/ProcessorHold.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform::lv2 {
namespace {

// The fraction of a block's duration that the process may take.
constexpr double DeadlineShare = 0.8;

void copy(ConstPlanarSound from, PlanarSound to) noexcept {
    for (std::uint32_t c = 0; c < to.channels(); ++c) std::copy_n(from[c], to.frames(), to[c]);
}

} // namespace

std::uint32_t OutsideProcessor::latencyOf(const BlockMemory& memory) const noexcept {
    if (_latencyPort < 0) return 0;
    const float frames =
        memory.values()[static_cast<std::size_t>(_latencyPort)].load(std::memory_order_relaxed);
    return frames >= 1.0F ? static_cast<std::uint32_t>(std::min(frames, float{DryPath::LongestDelay})) : 0U;
}

void OutsideProcessor::process(ConstPlanarSound inputs, PlanarSound outputs,
                               std::int64_t sampleTime) noexcept {
    if (!_isAllocated.load(std::memory_order_relaxed)) return fillWithSilence(outputs);
    if (_isOffline.load(std::memory_order_relaxed)) return processOffline(inputs, outputs, sampleTime);
    const Gate::Passage inside = _gate.enter();
    for (std::uint32_t done = 0; done < outputs.frames();) {
        const std::uint32_t piece = std::min(outputs.frames() - done, BlockMemory::LongestBlock);
        const ConstPlanarSound in = inputs.after(done).first(piece);
        const PlanarSound out = outputs.after(done).first(piece);
        _dry.take(in);
        const bool isRendered = inside && renderOutside(in, out, sampleTime + done);
        if (isRendered) _latency = latencyOf(_audible->memory());
        if (isRendered) {
            _dry.lead(out, _latency);
        } else {
            _dry.replace(out, _latency);
        }
        done += piece;
    }
    if (_midi) _midi->flush();
}

// Puts the effect's threads where the calling thread is. The spare is put there before it is needed.
void OutsideProcessor::placeProcesses() noexcept {
    Placement placement;
    if (_isOffline.load(std::memory_order_relaxed)) {
        // No real-time priority, even if this thread has it: offline, a process may run for long without
        // sleeping, which the kernel takes for a thread that hangs.
        const ForeignCodeScope onlyOffline;
        placement.processor = ProcessorHold::take();
    } else {
        if (_renderingThread.note()) {
            const ForeignCodeScope waking;
            tellWatcher();
        }
        placement = _renderingThread.placement();
    }
    if (_audible != nullptr) _audible->place(placement);
    if (_audibleSpare != nullptr) _audibleSpare->place(placement);
}

// Nothing stands in for a process that ends: what was rendered would look complete.
void OutsideProcessor::processOffline(ConstPlanarSound inputs, PlanarSound outputs,
                                      std::int64_t sampleTime) noexcept {
    if (sampleTime == 0) _hasFailed = false; // the engine has started
    const Gate::Passage inside = _gate.enter();
    for (std::uint32_t done = 0; done < outputs.frames();) {
        const std::uint32_t piece = std::min(outputs.frames() - done, BlockMemory::LongestBlock);
        const PlanarSound out = outputs.after(done).first(piece);
        const bool isRendered =
            !_hasFailed && inside && renderOutside(inputs.after(done).first(piece), out, sampleTime + done);
        if (!isRendered) {
            _hasFailed = true;
            fillWithSilence(out);
        }
        done += piece;
    }
    if (_midi) _midi->flush();
}

bool OutsideProcessor::renderOutside(ConstPlanarSound inputs, PlanarSound outputs,
                                     std::int64_t sampleTime) noexcept {
    const std::uint32_t frames = outputs.frames();
    EffectProcess::Deadline deadline;
    if (!_isOffline.load(std::memory_order_relaxed)) {
        const std::chrono::duration<double> limit(DeadlineShare * frames /
                                                  _sampleRate.load(std::memory_order_relaxed));
        deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(limit);
    }
    placeProcesses();
    while (_audible != nullptr) {
        const BlockMemory& memory = _audible->memory();
        if (_midi) memory.header().wantsMidi.store(_midi->isWanted(), std::memory_order_relaxed);
        if (_audible->isFree()) copy(inputs, memory.inputs(frames));
        const EffectProcess::Outcome outcome = _audible->render(frames, sampleTime, deadline);
        if (outcome == EffectProcess::Outcome::Done) {
            _lateBlocks = 0;
            copy(memory.outputs(frames), outputs);
            takeMidi(memory);
            return true;
        }
        if (outcome == EffectProcess::Outcome::Late && ++_lateBlocks < 2) return false;
        // Also a process that seems to have ended: it may have overwritten the words that say so.
        _hanging = _audible;
        {
            const ForeignCodeScope waking;
            tellWatcher();
        }
        if (!deadline || !takeSpare(frames, sampleTime, deadline)) return false;
    }
    return false;
}

// Replaces a process that has ended or hangs by the spare. The spare renders the previous block first,
// because an effect that starts in the middle of a sound would cause a click.
bool OutsideProcessor::takeSpare(std::uint32_t frames, std::int64_t sampleTime,
                                 EffectProcess::Deadline deadline) noexcept {
    _audible = std::exchange(_audibleSpare, nullptr);
    _lateBlocks = 0;
    if (_audible == nullptr) return false;
    copyValues(_audible->memory());
    _dry.copyPrevious(_audible->memory().inputs(frames));
    return _audible->render(frames, sampleTime - frames, deadline) == EffectProcess::Outcome::Done;
}

void OutsideProcessor::takeMidi(const BlockMemory& memory) noexcept {
    if (!_midi) return;
    _midi->countLost(memory.header().midiLosses);
    const std::span<const std::byte> area = memory.midi();
    const std::size_t end = std::min<std::size_t>(memory.header().midiBytes, area.size());
    for (std::size_t at = 0; end - at >= sizeof(MidiRecord);) {
        MidiRecord record{};
        std::memcpy(&record, area.data() + at, sizeof record);
        at += sizeof record;
        if (record.length > end - at || record.length > BlockMemory::LongestMidi) return;
        std::memcpy(_midiRecord.data(), area.data() + at, record.length);
        _midi->push(record.sampleTime, reinterpret_cast<const std::uint8_t*>(_midiRecord.data()),
                    record.length);
        const std::size_t padded = (record.length + std::size_t{7}) & ~std::size_t{7};
        if (padded > end - at) return;
        at += padded;
    }
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Plugin.hpp"

#include "AtomSequence.hpp"
#include "effect/dsp/Denormals.hpp"

#include <lv2/midi/midi.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tonewright::effect {
namespace {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

// The memory layout of an atom vector of integers, in which the notes are saved.
struct StoredNotes {
    LV2_Atom_Vector_Body head{};
    std::array<std::int32_t, 4> notes{};
};

// Packs the notes into a byte each (0xFF for none) and the modulation wheel into 16 bits.
std::uint64_t packed(const PerformanceSnapshot& snapshot) noexcept {
    auto word = static_cast<std::uint64_t>(std::lround(snapshot.modWheel * 65535.F)) << 32U;
    for (std::size_t i = 0; i < snapshot.notes.size(); ++i) {
        word |= static_cast<std::uint64_t>(static_cast<std::uint8_t>(snapshot.notes[i])) << (8 * i);
    }
    return word;
}

PerformanceSnapshot unpacked(std::uint64_t word) noexcept {
    PerformanceSnapshot snapshot;
    for (std::size_t i = 0; i < snapshot.notes.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(word >> (8 * i));
        snapshot.notes[i] = byte < 128 ? byte : -1;
    }
    snapshot.modWheel = static_cast<float>((word >> 32U) & 0xFFFFU) / 65535.F;
    return snapshot;
}

} // namespace

Plugin::Plugin(double sampleRate, const LV2_URID_Map* map)
    : _sampleRate{sampleRate}
    , _hasUrids{map != nullptr}
    , _processor{sampleRate}
    , _values{defaultValues()}
    , _savedPerformance{packed({})} {
    if (map != nullptr) {
        const auto of = [map](const char* uri) { return map->map(map->handle, uri); };
        _urids = {of(LV2_ATOM__Float),    of(LV2_ATOM__Int),    of(LV2_ATOM__Object),
                  of(LV2_ATOM__Sequence), of(LV2_ATOM__Vector), of(LV2_MIDI__MidiEvent),
                  of(TuningUri),          of(ModWheelUri),      DisplayUrids::mapped(*map)};
    }
}

void Plugin::connect(std::uint32_t port, void* data) noexcept {
    switch (port) {
    case InputLeft:
    case InputRight:
        _inputs[port - InputLeft] = static_cast<const float*>(data);
        break;
    case OutputLeft:
    case OutputRight:
        _outputs[port - OutputLeft] = static_cast<float*>(data);
        break;
    case Control:
        _control = static_cast<const LV2_Atom_Sequence*>(data);
        break;
    case Notify:
        _notify = static_cast<LV2_Atom_Sequence*>(data);
        break;
    case Latency:
        _latency = static_cast<float*>(data);
        break;
    default:
        if (port < PortCount) {
            _controls[port - FirstParameter] = static_cast<const float*>(data);
        }
        break;
    }
}

void Plugin::activate() noexcept {
    _processor.reset();
    _displayLeaseFrames = 0;
    _framesSinceDisplay = 0;
}

void Plugin::readParameters() noexcept {
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        if (_controls[i] != nullptr) {
            _values[i] = *_controls[i];
        }
    }
    _processor.setParameters(_values);
}

void Plugin::run(std::uint32_t frames) noexcept {
    const FlushDenormals flush;
    if (_latency != nullptr) {
        *_latency = static_cast<float>(Processor::latencyFrames());
    }
    readParameters();
    AtomSequenceWriter writer{_hasUrids ? _notify : nullptr, _urids.atomSequence};
    _outbox.beginBlock(writer.room(3));
    processBlock(frames);
    for (const OutgoingMidi& message : _outbox.messages()) {
        writer.append(message.frame, _urids.midiEvent, message.bytes);
    }
    sendDisplay(frames, writer);
    publishSnapshot();
}

void Plugin::processBlock(std::uint32_t frames) noexcept {
    const bool hasSound =
        std::all_of(_inputs.begin(), _inputs.end(), [](const float* p) { return p != nullptr; }) &&
        std::all_of(_outputs.begin(), _outputs.end(), [](const float* p) { return p != nullptr; });
    std::uint32_t done = 0;
    const auto processUpTo = [&](std::uint32_t end) {
        if (hasSound && end > done) {
            _processor.process(_inputs[0] + done, _inputs[1] + done, _outputs[0] + done, _outputs[1] + done,
                               end - done, done, _outbox);
        }
        done = std::max(done, end);
    };
    if (_hasUrids && _control != nullptr && _control->atom.type == _urids.atomSequence) {
        forEachEvent(*_control, [&](std::int64_t frame, LV2_URID type, std::span<const std::uint8_t> body) {
            processUpTo(static_cast<std::uint32_t>(std::clamp<std::int64_t>(frame, 0, frames)));
            handleEvent(type, body);
        });
    }
    processUpTo(frames);
}

void Plugin::handleEvent(LV2_URID type, std::span<const std::uint8_t> body) noexcept {
    if (type == _urids.midiEvent) {
        _processor.midi(body);
    } else if (type == _urids.atomObject && body.size() >= sizeof(LV2_Atom_Object_Body)) {
        LV2_Atom_Object_Body object{};
        std::memcpy(&object, body.data(), sizeof(object));
        if (object.otype == _urids.display.displayRequest) {
            _displayLeaseFrames = static_cast<std::int64_t>(_sampleRate * DisplayLeaseSeconds);
            _processor.setMetering(true);
        }
    }
}

void Plugin::sendDisplay(std::uint32_t frames, AtomSequenceWriter& writer) noexcept {
    if (_displayLeaseFrames <= 0 || frames == 0) {
        return;
    }
    _displayLeaseFrames -= frames;
    if (_displayLeaseFrames <= 0) {
        _processor.setMetering(false);
    }
    _framesSinceDisplay += frames;
    const auto interval = static_cast<std::int64_t>(_sampleRate / DisplayFramesPerSecond);
    if (_framesSinceDisplay < interval || writer.room(sizeof(DisplayMessage) - sizeof(LV2_Atom)) == 0) {
        return;
    }
    _framesSinceDisplay %= interval;
    const DisplayMessage message = DisplayMessage::of(_processor.takeDisplay(), _urids.display);
    const auto* const body = reinterpret_cast<const std::uint8_t*>(&message) + sizeof(LV2_Atom);
    writer.append(frames - 1, _urids.atomObject, {body, sizeof(DisplayMessage) - sizeof(LV2_Atom)});
}

void Plugin::publishSnapshot() noexcept {
    _savedPerformance.store(packed(_processor.snapshot()), std::memory_order_relaxed);
}

LV2_State_Status Plugin::save(LV2_State_Store_Function store, LV2_State_Handle handle) const noexcept {
    if (!_hasUrids) {
        return LV2_STATE_ERR_NO_FEATURE;
    }
    const PerformanceSnapshot snapshot = unpacked(_savedPerformance.load(std::memory_order_relaxed));
    const StoredNotes notes{{sizeof(std::int32_t), _urids.atomInt}, snapshot.notes};
    constexpr std::uint32_t Flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
    const LV2_State_Status first =
        store(handle, _urids.tuning, &notes, sizeof(notes), _urids.atomVector, Flags);
    const LV2_State_Status second =
        store(handle, _urids.modWheel, &snapshot.modWheel, sizeof(float), _urids.atomFloat, Flags);
    return first == LV2_STATE_SUCCESS ? second : first;
}

LV2_State_Status Plugin::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) noexcept {
    if (!_hasUrids) {
        return LV2_STATE_ERR_NO_FEATURE;
    }
    PerformanceSnapshot snapshot; // missing and invalid properties keep their defaults
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* value = retrieve(handle, _urids.tuning, &size, &type, &flags);
    if (value != nullptr && type == _urids.atomVector && size == sizeof(StoredNotes)) {
        StoredNotes notes;
        std::memcpy(&notes, value, sizeof(notes));
        if (notes.head.child_type == _urids.atomInt && notes.head.child_size == sizeof(std::int32_t)) {
            snapshot.notes = notes.notes;
        }
    }
    value = retrieve(handle, _urids.modWheel, &size, &type, &flags);
    if (value != nullptr && type == _urids.atomFloat && size == sizeof(float)) {
        std::memcpy(&snapshot.modWheel, value, sizeof(float));
    }
    _processor.restore(snapshot);
    publishSnapshot();
    return LV2_STATE_SUCCESS;
}

} // namespace tonewright::effect

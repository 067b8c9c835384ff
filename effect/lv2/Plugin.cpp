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

// A vector of integers as it is stored in a saved session.
struct StoredNotes {
    LV2_Atom_Vector_Body head{};
    std::array<std::int32_t, 4> notes{};
};

// Notes as bytes (0xFF for none) and the wheel in 16 bits.
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
    : sampleRate_{sampleRate}
    , hasUrids_{map != nullptr}
    , processor_{sampleRate}
    , values_{defaultValues()}
    , savedPerformance_{packed({})} {
    if (map != nullptr) {
        const auto of = [map](const char* uri) { return map->map(map->handle, uri); };
        urids_ = {of(LV2_ATOM__Float),    of(LV2_ATOM__Int),    of(LV2_ATOM__Object),
                  of(LV2_ATOM__Sequence), of(LV2_ATOM__Vector), of(LV2_MIDI__MidiEvent),
                  of(TuningUri),          of(ModWheelUri),      DisplayUrids::mapped(*map)};
    }
}

void Plugin::connect(std::uint32_t port, void* data) noexcept {
    switch (port) {
    case InputLeft:
    case InputRight:
        inputs_[port - InputLeft] = static_cast<const float*>(data);
        break;
    case OutputLeft:
    case OutputRight:
        outputs_[port - OutputLeft] = static_cast<float*>(data);
        break;
    case Control:
        control_ = static_cast<const LV2_Atom_Sequence*>(data);
        break;
    case Notify:
        notify_ = static_cast<LV2_Atom_Sequence*>(data);
        break;
    case Latency:
        latency_ = static_cast<float*>(data);
        break;
    default:
        if (port < PortCount) {
            controls_[port - FirstParameter] = static_cast<const float*>(data);
        }
        break;
    }
}

void Plugin::activate() noexcept {
    processor_.reset();
    displayLeaseFrames_ = 0;
    framesSinceDisplay_ = 0;
}

void Plugin::readParameters() noexcept {
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        if (controls_[i] != nullptr) {
            values_[i] = *controls_[i];
        }
    }
    processor_.setParameters(values_);
}

void Plugin::run(std::uint32_t frames) noexcept {
    const FlushDenormals flush;
    if (latency_ != nullptr) {
        *latency_ = static_cast<float>(Processor::latencyFrames());
    }
    readParameters();
    AtomSequenceWriter writer{hasUrids_ ? notify_ : nullptr, urids_.atomSequence};
    outbox_.beginBlock(writer.room(3));
    processBlock(frames);
    for (const OutgoingMidi& message : outbox_.messages()) {
        writer.append(message.frame, urids_.midiEvent, message.bytes);
    }
    sendDisplay(frames, writer);
    publishSnapshot();
}

void Plugin::processBlock(std::uint32_t frames) noexcept {
    const bool hasSound =
        std::all_of(inputs_.begin(), inputs_.end(), [](const float* p) { return p != nullptr; }) &&
        std::all_of(outputs_.begin(), outputs_.end(), [](const float* p) { return p != nullptr; });
    std::uint32_t done = 0;
    const auto processUpTo = [&](std::uint32_t end) {
        if (hasSound && end > done) {
            processor_.process(inputs_[0] + done, inputs_[1] + done, outputs_[0] + done, outputs_[1] + done,
                               end - done, done, outbox_);
        }
        done = std::max(done, end);
    };
    if (hasUrids_ && control_ != nullptr && control_->atom.type == urids_.atomSequence) {
        forEachEvent(*control_, [&](std::int64_t frame, LV2_URID type, std::span<const std::uint8_t> body) {
            processUpTo(static_cast<std::uint32_t>(std::clamp<std::int64_t>(frame, 0, frames)));
            handleEvent(type, body);
        });
    }
    processUpTo(frames);
}

void Plugin::handleEvent(LV2_URID type, std::span<const std::uint8_t> body) noexcept {
    if (type == urids_.midiEvent) {
        processor_.midi(body);
    } else if (type == urids_.atomObject && body.size() >= sizeof(LV2_Atom_Object_Body)) {
        LV2_Atom_Object_Body object{};
        std::memcpy(&object, body.data(), sizeof(object));
        if (object.otype == urids_.display.displayRequest) {
            displayLeaseFrames_ = static_cast<std::int64_t>(sampleRate_ * DisplayLeaseSeconds);
            processor_.setMetering(true);
        }
    }
}

void Plugin::sendDisplay(std::uint32_t frames, AtomSequenceWriter& writer) noexcept {
    if (displayLeaseFrames_ <= 0 || frames == 0) {
        return;
    }
    displayLeaseFrames_ -= frames;
    if (displayLeaseFrames_ <= 0) {
        processor_.setMetering(false);
    }
    framesSinceDisplay_ += frames;
    const auto interval = static_cast<std::int64_t>(sampleRate_ / DisplayFramesPerSecond);
    if (framesSinceDisplay_ < interval || writer.room(sizeof(DisplayMessage) - sizeof(LV2_Atom)) == 0) {
        return;
    }
    framesSinceDisplay_ %= interval;
    const DisplayMessage message = DisplayMessage::of(processor_.takeDisplay(), urids_.display);
    const auto* const body = reinterpret_cast<const std::uint8_t*>(&message) + sizeof(LV2_Atom);
    writer.append(frames - 1, urids_.atomObject, {body, sizeof(DisplayMessage) - sizeof(LV2_Atom)});
}

void Plugin::publishSnapshot() noexcept {
    savedPerformance_.store(packed(processor_.snapshot()), std::memory_order_relaxed);
}

LV2_State_Status Plugin::save(LV2_State_Store_Function store, LV2_State_Handle handle) const noexcept {
    if (!hasUrids_) {
        return LV2_STATE_ERR_NO_FEATURE;
    }
    const PerformanceSnapshot snapshot = unpacked(savedPerformance_.load(std::memory_order_relaxed));
    const StoredNotes notes{{sizeof(std::int32_t), urids_.atomInt}, snapshot.notes};
    constexpr std::uint32_t Flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
    const LV2_State_Status first =
        store(handle, urids_.tuning, &notes, sizeof(notes), urids_.atomVector, Flags);
    const LV2_State_Status second =
        store(handle, urids_.modWheel, &snapshot.modWheel, sizeof(float), urids_.atomFloat, Flags);
    return first == LV2_STATE_SUCCESS ? second : first;
}

LV2_State_Status Plugin::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) noexcept {
    if (!hasUrids_) {
        return LV2_STATE_ERR_NO_FEATURE;
    }
    PerformanceSnapshot snapshot; // what is not stored, or stored wrongly, is at its default
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* value = retrieve(handle, urids_.tuning, &size, &type, &flags);
    if (value != nullptr && type == urids_.atomVector && size == sizeof(StoredNotes)) {
        StoredNotes notes;
        std::memcpy(&notes, value, sizeof(notes));
        if (notes.head.child_type == urids_.atomInt && notes.head.child_size == sizeof(std::int32_t)) {
            snapshot.notes = notes.notes;
        }
    }
    value = retrieve(handle, urids_.modWheel, &size, &type, &flags);
    if (value != nullptr && type == urids_.atomFloat && size == sizeof(float)) {
        std::memcpy(&snapshot.modWheel, value, sizeof(float));
    }
    processor_.restore(snapshot);
    publishSnapshot();
    return LV2_STATE_SUCCESS;
}

} // namespace tonewright::effect

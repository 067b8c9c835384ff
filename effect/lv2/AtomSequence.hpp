// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads and writes atom sequences in the host's buffers, without ever exceeding the buffers. Used on the
// audio thread.
#pragma once

#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace tonewright::effect {

[[nodiscard]] constexpr std::size_t paddedAtomSize(std::size_t size) noexcept {
    return (size + 7U) & ~std::size_t{7};
}

/// Calls `use(frame, type, body)` for every event of a sequence. Stops at an event that extends beyond the
/// sequence.
template <typename Use>
void forEachEvent(const LV2_Atom_Sequence& sequence, Use&& use) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&sequence.body);
    const std::size_t size = sequence.atom.size;
    std::size_t at = sizeof(LV2_Atom_Sequence_Body);
    while (at + sizeof(LV2_Atom_Event) <= size) {
        LV2_Atom_Event event{};
        std::memcpy(&event, bytes + at, sizeof(event));
        at += sizeof(event);
        if (event.body.size > size - at) {
            return;
        }
        use(event.time.frames, event.body.type, std::span<const std::uint8_t>{bytes + at, event.body.size});
        at += paddedAtomSize(event.body.size);
    }
}

/// Writes the sequence of an output port. Events are written completely or not at all.
class AtomSequenceWriter {
  public:
    /// The host must have stored the capacity of `buffer` in its size field. `buffer` may be null.
    AtomSequenceWriter(LV2_Atom_Sequence* buffer, LV2_URID sequenceType) noexcept
        : _sequence{buffer} {
        _capacity = _sequence == nullptr ? 0 : _sequence->atom.size;
        if (_capacity < sizeof(LV2_Atom_Sequence)) {
            _sequence = nullptr;
            return;
        }
        _sequence->atom = {sizeof(LV2_Atom_Sequence_Body), sequenceType};
        _sequence->body = {0, 0};
    }

    /// Returns how many more events with a body of this size fit.
    [[nodiscard]] std::size_t room(std::size_t bodySize) const noexcept {
        if (_sequence == nullptr) {
            return 0;
        }
        // In some hosts the capacity includes the header, in others not. This code assumes that it does.
        const std::size_t used = sizeof(LV2_Atom) + _sequence->atom.size;
        return used >= _capacity ? 0
                                 : (_capacity - used) / (sizeof(LV2_Atom_Event) + paddedAtomSize(bodySize));
    }

    /// Appends an event, or returns false if it does not fit. Frames must not decrease.
    bool append(std::int64_t frame, LV2_URID type, std::span<const std::uint8_t> body) noexcept {
        if (room(body.size()) == 0) {
            return false;
        }
        auto* at = reinterpret_cast<std::uint8_t*>(_sequence) + sizeof(LV2_Atom) + _sequence->atom.size;
        LV2_Atom_Event event{};
        event.time.frames = frame;
        event.body = {static_cast<std::uint32_t>(body.size()), type};
        std::memcpy(at, &event, sizeof(event));
        std::copy(body.begin(), body.end(), at + sizeof(event));
        std::memset(at + sizeof(event) + body.size(), 0, paddedAtomSize(body.size()) - body.size());
        _sequence->atom.size += static_cast<std::uint32_t>(sizeof(event) + paddedAtomSize(body.size()));
        return true;
    }

  private:
    LV2_Atom_Sequence* _sequence;
    std::size_t _capacity = 0;
};

} // namespace tonewright::effect

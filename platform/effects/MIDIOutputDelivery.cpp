// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/MIDIOutputDelivery.private.hpp"

#include "platform/foundation/console.hpp"

#include <algorithm>
#include <cstring>

namespace platform {

MIDIOutputDelivery::MIDIOutputDelivery(std::string effectName)
    : _effectName(std::move(effectName))
    , _thread([this] { run(); }) {}

MIDIOutputDelivery::~MIDIOutputDelivery() {
    _isEnding = true;
    _wake.signal();
    _thread.join();
}

void MIDIOutputDelivery::setBlock(MIDIOutputEventBlock block) {
    const bool isWanted = block != nullptr;
    if (std::this_thread::get_id() == _thread.get_id()) {
        _block.swap(block); // from inside the former block: the mutex is this thread's already
    } else {
        const std::scoped_lock lock(_mutex);
        _block.swap(block);
    }
    _isWanted = isWanted;
}

void MIDIOutputDelivery::push(std::int64_t sampleTime, const std::uint8_t* data,
                              std::uint32_t length) noexcept {
    const std::size_t end = _written.load(std::memory_order_relaxed);
    if (end - _read.load(std::memory_order_acquire) == EventCount) {
        _lost.fetch_add(1, std::memory_order_relaxed);
        _hasNews = true; // so that the loss is said
        return;
    }
    Event& event = _events[end % EventCount];
    event.sampleTime = sampleTime;
    event.length = length;
    event.bytes = {};
    std::copy_n(data, std::min<std::size_t>(length, InlineBytes), event.bytes.begin());
    event.hasLongBytes = length > InlineBytes && _longBytes.write(std::as_bytes(std::span(data, length)));
    if (length > InlineBytes && !event.hasLongBytes) _shortened.fetch_add(1, std::memory_order_relaxed);
    _written.store(end + 1, std::memory_order_release);
    _hasNews = true;
}

void MIDIOutputDelivery::flush() noexcept {
    if (!_hasNews) return;
    _hasNews = false;
    _wake.signal();
}

void MIDIOutputDelivery::deliver(const Event& event, const MIDIOutputEventBlock& block) {
    const std::uint8_t* data = event.bytes.data();
    if (event.length > InlineBytes) {
        if (event.hasLongBytes) {
            (void)_longBytes.read(_scratch);
        } else { // bytes that were lost read as 0
            _scratch.assign(event.length, std::byte{0});
            std::memcpy(_scratch.data(), event.bytes.data(), InlineBytes);
        }
        data = reinterpret_cast<const std::uint8_t*>(_scratch.data());
    }
    if (block) (void)block(event.sampleTime, 0, event.length, data);
}

void MIDIOutputDelivery::run() {
    for (bool isEnding = false; !isEnding;) {
        _wake.wait();
        isEnding = _isEnding.load();
        const std::size_t end = _written.load(std::memory_order_acquire);
        for (std::size_t at = _read.load(std::memory_order_relaxed); at != end; ++at) {
            {
                const std::scoped_lock lock(_mutex);
                const MIDIOutputEventBlock block = _block; // it may replace itself
                deliver(_events[at % EventCount], block);
            }
            _read.store(at + 1, std::memory_order_release);
        }
        if (const auto lost = _lost.exchange(0); lost > 0) {
            warn("The effect " + _effectName +
                 " sent MIDI faster than it could be taken: " + std::to_string(lost) + " events were lost.");
        }
        if (const auto shortened = _shortened.exchange(0); shortened > 0) {
            warn("The effect " + _effectName + " sent long MIDI messages faster than they could be taken: " +
                 std::to_string(shortened) + " were shortened to " + std::to_string(InlineBytes) + " bytes.");
        }
    }
}

} // namespace platform

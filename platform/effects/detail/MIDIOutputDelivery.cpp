// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/detail/MIDIOutputDelivery.hpp"

#include "platform/foundation/console.hpp"
#include "platform/realtime/ByteRing.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <mutex>
#include <span>
#include <vector>

namespace platform {

namespace {

constexpr std::size_t InlineBytes = 8;
constexpr std::size_t EventCount = 65536;
constexpr std::size_t LongBytes = std::size_t{1} << 18U;

struct Event {
    std::int64_t sampleTime;
    std::uint32_t length;
    bool hasLongBytes; // all bytes are in the ring of long events, not only the first ones in `bytes`
    std::array<std::uint8_t, InlineBytes> bytes;
};

} // namespace

struct MIDIOutputDelivery::Queue {
    explicit Queue(std::string name)
        : effectName(std::move(name)) {}

    void run();
    void deliver(const Event& event, const MIDIOutputEventBlock& to);
    void reportLosses();

    const std::string effectName;
    // A ring: the audio thread advances `written`, the delivery thread `read`.
    const std::unique_ptr<Event[]> events = std::make_unique_for_overwrite<Event[]>(EventCount);
    alignas(64) std::atomic<std::size_t> written{0};
    alignas(64) std::atomic<std::size_t> read{0};
    ByteRing longBytes{LongBytes};
    std::atomic<std::uint64_t> lost{0};      // events that did not fit
    std::atomic<std::uint64_t> shortened{0}; // events that were truncated to their first bytes
    std::atomic<bool> isWanted{false};
    bool hasNews = false; // audio thread only

    std::mutex mutex;               // guards `block`; locked while `block` is called
    MIDIOutputEventBlock block;     // guarded by `mutex`
    std::vector<std::byte> scratch; // delivery thread only
    WakeSignal wake;
    std::atomic<bool> isEnding{false};
};

MIDIOutputDelivery::MIDIOutputDelivery(std::string effectName)
    : _queue(std::make_shared<Queue>(std::move(effectName)))
    , _thread([queue = _queue] { queue->run(); }) {}

MIDIOutputDelivery::~MIDIOutputDelivery() {
    _queue->isEnding = true;
    _queue->wake.signal();
    if (std::this_thread::get_id() == _thread.get_id()) {
        _thread.detach();
    } else {
        _thread.join();
    }
}

void MIDIOutputDelivery::setBlock(MIDIOutputEventBlock block) {
    const bool isWanted = block != nullptr;
    if (std::this_thread::get_id() == _thread.get_id()) {
        _queue->block.swap(block); // called by the previous block: this thread has already locked the mutex
    } else {
        const std::scoped_lock lock(_queue->mutex);
        _queue->block.swap(block);
    }
    _queue->isWanted = isWanted;
}

bool MIDIOutputDelivery::isWanted() const noexcept {
    return _queue->isWanted.load(std::memory_order_relaxed);
}

void MIDIOutputDelivery::push(std::int64_t sampleTime, const std::uint8_t* data,
                              std::uint32_t length) noexcept {
    Queue& queue = *_queue;
    const std::size_t end = queue.written.load(std::memory_order_relaxed);
    queue.hasNews = true; // also for a lost event, which must be reported
    if (end - queue.read.load(std::memory_order_acquire) == EventCount) {
        queue.lost.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    Event& event = queue.events[end % EventCount];
    event.sampleTime = sampleTime;
    event.length = length;
    event.bytes = {};
    std::copy_n(data, std::min<std::size_t>(length, InlineBytes), event.bytes.begin());
    event.hasLongBytes =
        length > InlineBytes && queue.longBytes.write(std::as_bytes(std::span(data, length)));
    if (length > InlineBytes && !event.hasLongBytes) queue.shortened.fetch_add(1, std::memory_order_relaxed);
    queue.written.store(end + 1, std::memory_order_release);
}

void MIDIOutputDelivery::countLost(std::uint32_t events) noexcept {
    if (events == 0) return;
    _queue->lost.fetch_add(events, std::memory_order_relaxed);
    _queue->hasNews = true;
}

void MIDIOutputDelivery::flush() noexcept {
    if (!_queue->hasNews) return;
    _queue->hasNews = false;
    _queue->wake.signal();
}

void MIDIOutputDelivery::Queue::deliver(const Event& event, const MIDIOutputEventBlock& to) {
    const std::uint8_t* data = event.bytes.data();
    if (event.length > InlineBytes) {
        if (event.hasLongBytes) {
            (void)longBytes.read(scratch);
        } else { // lost bytes are replaced by 0
            scratch.assign(event.length, std::byte{0});
            std::memcpy(scratch.data(), event.bytes.data(), InlineBytes);
        }
        data = reinterpret_cast<const std::uint8_t*>(scratch.data());
    }
    if (to) (void)to(event.sampleTime, 0, event.length, data);
}

void MIDIOutputDelivery::Queue::run() {
    for (bool isLast = false; !isLast;) {
        wake.wait();
        isLast = isEnding.load();
        const std::size_t end = written.load(std::memory_order_acquire);
        for (std::size_t at = read.load(std::memory_order_relaxed); at != end; ++at) {
            {
                const std::scoped_lock lock(mutex);
                const MIDIOutputEventBlock copy = block; // the block may replace itself
                deliver(events[at % EventCount], copy);
            }
            read.store(at + 1, std::memory_order_release);
        }
        reportLosses();
    }
}

void MIDIOutputDelivery::Queue::reportLosses() {
    if (const auto count = lost.exchange(0); count > 0) {
        warn("The effect " + effectName +
             " sent MIDI faster than it could be delivered: " + std::to_string(count) + " events were lost.");
    }
    if (const auto count = shortened.exchange(0); count > 0) {
        warn("The effect " + effectName + " sent long MIDI messages faster than they could be delivered: " +
             std::to_string(count) + " were shortened to " + std::to_string(InlineBytes) + " bytes.");
    }
}

} // namespace platform

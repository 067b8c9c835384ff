// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Carries the MIDI events of one effect from the audio thread to a block that is called on a thread of its
// own. The audio side writes into a lock-free ring of 65,536 events; bytes of long events go into a second
// ring. What found no room is counted and said on standard error by the delivery thread.
// Private to platform/effects.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"
#include "platform/realtime/ByteRing.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <thread>

namespace platform {

class MIDIOutputDelivery {
  public:
    /// `effectName` stands in what is said of lost events.
    explicit MIDIOutputDelivery(std::string effectName);
    /// Delivers what was written and ends the thread. The audio side must have ended.
    ~MIDIOutputDelivery();
    MIDIOutputDelivery(const MIDIOutputDelivery&) = delete;
    MIDIOutputDelivery& operator=(const MIDIOutputDelivery&) = delete;

    /// Have events handed to `block` from now on; none ends it. Control side. When it returns, the former
    /// block is not called any more, unless the call comes from inside it.
    void setBlock(MIDIOutputEventBlock block);

    /// Returns whether there is a block. Audio side.
    [[nodiscard]] bool isWanted() const noexcept { return _isWanted.load(std::memory_order_relaxed); }
    /// Queues one event. Audio side.
    void push(std::int64_t sampleTime, const std::uint8_t* data, std::uint32_t length) noexcept;
    /// Wakes the delivery thread, if anything was queued since the last call. Audio side, once per block.
    void flush() noexcept;

  private:
    static constexpr std::size_t InlineBytes = 8;
    static constexpr std::size_t EventCount = 65536;
    static constexpr std::size_t LongBytes = std::size_t{1} << 18U;

    struct Event {
        std::int64_t sampleTime;
        std::uint32_t length;
        bool hasLongBytes; // all bytes stand in the ring of long events, else only the first here
        std::array<std::uint8_t, InlineBytes> bytes;
    };

    void run();
    void deliver(const Event& event, const MIDIOutputEventBlock& block);

    const std::string _effectName;
    // Written by the audio side, read by the delivery thread, through the two counters.
    const std::unique_ptr<Event[]> _events = std::make_unique_for_overwrite<Event[]>(EventCount);
    alignas(64) std::atomic<std::size_t> _written{0};
    alignas(64) std::atomic<std::size_t> _read{0};
    ByteRing _longBytes{LongBytes};
    std::atomic<std::uint64_t> _lost{0};      // events that found no room
    std::atomic<std::uint64_t> _shortened{0}; // events whose further bytes found no room
    std::atomic<bool> _isWanted{false};
    bool _hasNews = false; // audio side only

    std::mutex _mutex;               // guards _block; held while it is called
    MIDIOutputEventBlock _block;     // guarded by _mutex
    std::vector<std::byte> _scratch; // delivery thread only
    WakeSignal _wake;
    std::atomic<bool> _isEnding{false};
    std::thread _thread; // last: it uses all of the above
};

} // namespace platform

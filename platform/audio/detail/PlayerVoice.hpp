// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The audio side of a player node: everything that its audio thread shares with the others, and how that
// thread reads it.
#pragma once

#include "platform/audio/detail/RatePath.hpp"
#include "platform/realtime/FrameRing.hpp"
#include "platform/realtime/Gate.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <atomic>
#include <cstdint>
#include <memory>

namespace platform {

/// Crosses threads: the atomics, which are independent of one another, and what `gate` guards. The gate is
/// open while the ring holds enough to start. The plain members belong to the audio thread while it is open
/// (of the ring: its reading end) and, while it is closed, to the thread whose turn it is to decode.
struct PlayerVoice {
    static constexpr std::uint32_t MaximumFrames = 1024;

    Gate gate;
    FrameRing ring;
    std::unique_ptr<RatePath> path; // ring -> link -> output; null while the ring is not configured
    PlanarBuffer scratch;           // MaximumFrames of the ring's channels
    PlanarBuffer linkScratch;       // the same, for a narrower link

    std::atomic<bool> playing{false};
    std::atomic<bool> offline{false};      // the decoder need not be woken
    std::atomic<bool> passUnderWay{false}; // frames are due: a short ring is an underrun
    std::atomic<std::uint64_t> underruns{0};
    std::atomic<bool> decoderSleeps{false};
    WakeSignal wake; // signalled when the decoder sleeps and should not

    /// Fills `sound` (at most MaximumFrames frames). If `linkChannels` is not 0 and less than the ring's
    /// number, the sound passes through that many channels. Audio thread.
    void render(PlanarSound sound, std::uint32_t linkChannels) noexcept;
    /// Any thread.
    void wakeDecoder() noexcept;

  private:
    void readRing(PlanarSound sound) noexcept;
};

} // namespace platform

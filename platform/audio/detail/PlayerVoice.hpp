// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The part of a player node that the audio thread uses: the ring of decoded frames, and the functions that
// read it.
#pragma once

#include "platform/audio/detail/RatePath.hpp"
#include "platform/realtime/FrameRing.hpp"
#include "platform/realtime/Gate.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <atomic>
#include <cstdint>
#include <memory>

namespace platform {

/// Shared between threads: the atomics, which are independent of one another, and the members that `gate`
/// guards: `ring`, `path`, `scratch` and `linkScratch`. The gate is open while the stream can be read. While
/// it is open, these members belong to the audio thread, except for the writing end of the ring. While it is
/// closed, they belong to the thread that decodes, which holds PlayerStream's `_turn`.
struct PlayerVoice {
    static constexpr std::uint32_t MaximumFrames = 8192;

    Gate gate;
    FrameRing ring;
    std::unique_ptr<RatePath>
        path;                 // ring rate -> link rate -> output rate; null while the ring is not configured
    PlanarBuffer scratch;     // MaximumFrames frames, with the ring's channels
    PlanarBuffer linkScratch; // likewise, for a link with fewer channels

    std::atomic<bool> playing{false};
    std::atomic<bool> offline{false};      // the renderer decodes, so the decoder is not woken
    std::atomic<bool> passUnderWay{false}; // a file is being played, so missing frames are an underrun
    std::atomic<std::uint64_t> underruns{0};
    std::atomic<bool> decoderSleeps{false};
    WakeSignal wake; // wakes the decoder

    /// Fills `sound` (at most MaximumFrames frames). If `linkChannels` is not 0 and less than the ring's
    /// channel count, the sound is first mixed down to `linkChannels` channels. Audio thread.
    void render(PlanarSound sound, std::uint32_t linkChannels) noexcept;
    /// Returns whether `frames` frames of output are available, or nothing is playing. Audio thread.
    [[nodiscard]] bool isProvided(std::uint32_t frames) noexcept;
    /// Returns whether the ring contains enough frames for `frames` frames of output. The ring must be
    /// configured. Call inside the gate, or with PlayerStream's `_turn` held.
    [[nodiscard]] bool holdsFor(std::uint32_t frames) const noexcept;
    /// Wakes the decoder if it sleeps. Any thread.
    void wakeDecoder() noexcept;

  private:
    void readRing(PlanarSound sound) noexcept;
};

} // namespace platform

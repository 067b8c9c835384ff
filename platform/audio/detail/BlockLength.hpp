// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The usual length of a device's blocks, measured on the audio thread. Effects receive it as a hint.
//
// Shared between threads: only `_usual`, which is independent of the other members.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace platform {

class BlockLength {
  public:
    /// Restarts the measurement with `frames`, the length that the device states. Control side, while nothing
    /// renders.
    void reset(std::uint32_t frames) noexcept {
        _usual = frames;
        _longest = 0;
        _count = 0;
    }
    /// Records a block and returns whether the usual length has changed. The length grows with the first
    /// longer block, and shrinks to the longest of 64 blocks that were all shorter. Audio thread.
    [[nodiscard]] bool note(std::uint32_t frames) noexcept {
        constexpr int Patience = 64;
        _longest = std::max(_longest, frames);
        const std::uint32_t usual = _usual.load(std::memory_order_relaxed);
        if (frames <= usual && ++_count < Patience) return false;
        const std::uint32_t longest = _longest;
        _longest = 0;
        _count = 0;
        _usual.store(longest, std::memory_order_relaxed);
        return longest != usual;
    }
    /// Returns the usual length, in frames. Any thread.
    [[nodiscard]] std::uint32_t usual() const noexcept { return _usual.load(std::memory_order_relaxed); }

  private:
    std::atomic<std::uint32_t> _usual{0};
    std::uint32_t _longest = 0; // longest block since `_count` was 0
    int _count = 0;
};

} // namespace platform

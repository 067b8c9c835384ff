// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The usual number of frames of a device's blocks, as the audio side sees it. Effects are told of it.
//
// Crosses threads: only `_usual`, which is independent of the rest.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace platform {

class BlockLength {
  public:
    /// Starts again from what the device expects. Control side, while nothing renders.
    void reset(std::uint32_t frames) noexcept {
        _usual = frames;
        _longest = 0;
        _count = 0;
    }
    /// Records a block and returns whether the usual length has changed: at once to a longer one, to a
    /// shorter one if no block of the last 64 was longer. Audio thread.
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
    std::uint32_t _longest = 0; // since `_count` was 0
    int _count = 0;
};

} // namespace platform

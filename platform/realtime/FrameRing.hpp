// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A ring of float frames, one plane per channel, between one writer and one reader.
//
// Shared between threads: the two counters, each written by one side only. The samples between the counters
// belong to the reader, all others to the writer. Neither side may use the ring during `configure` and
// `clear`.
#pragma once

#include "platform/realtime/PlanarBuffer.hpp"

#include <algorithm>
#include <atomic>
#include <cstdint>

namespace platform {

class FrameRing {
  public:
    /// Empties the ring and resizes it to `capacity` frames of `channels` channels.
    void configure(std::uint32_t channels, std::uint32_t capacity) {
        _samples.resize(channels, capacity);
        clear();
    }
    void clear() noexcept {
        _read.store(0, std::memory_order_relaxed);
        _written.store(0, std::memory_order_relaxed);
    }

    [[nodiscard]] std::uint32_t channels() const noexcept { return _samples.channels(); }
    [[nodiscard]] std::uint32_t capacity() const noexcept { return _samples.frames(); }
    /// Returns the number of frames that can be read. The true number can be higher when the reader calls,
    /// and lower when the writer calls.
    [[nodiscard]] std::uint32_t readable() const noexcept {
        const std::uint64_t read = _read.load(std::memory_order_acquire);
        return static_cast<std::uint32_t>(_written.load(std::memory_order_acquire) - read);
    }

    /// Returns the number of frames that can be written contiguously. Writer.
    [[nodiscard]] std::uint32_t writable() const noexcept {
        const std::uint64_t written = _written.load(std::memory_order_relaxed);
        const auto used = static_cast<std::uint32_t>(written - _read.load(std::memory_order_acquire));
        return std::min(capacity() - used, capacity() - position(written));
    }
    /// Returns the space for `writable()` frames. Writer.
    [[nodiscard]] PlanarSound space() noexcept {
        return _samples.view().after(position(_written.load(std::memory_order_relaxed))).first(writable());
    }
    /// Passes the first `frames` frames of the space to the reader. Writer.
    void commit(std::uint32_t frames) noexcept {
        _written.store(_written.load(std::memory_order_relaxed) + frames, std::memory_order_release);
    }

    /// Moves frames into `sound` until it is full or the ring is empty, and returns their number. Reader.
    std::uint32_t read(PlanarSound sound) noexcept {
        const std::uint64_t start = _read.load(std::memory_order_relaxed);
        const auto held = static_cast<std::uint32_t>(_written.load(std::memory_order_acquire) - start);
        const std::uint32_t count = std::min(sound.frames(), held);
        const std::uint32_t from = position(start);
        const std::uint32_t first = std::min(count, capacity() - from);
        for (std::uint32_t channel = 0; channel < channels(); ++channel) {
            const float* source = _samples.view()[channel];
            std::copy_n(source + from, first, sound[channel]);
            std::copy_n(source, count - first, sound[channel] + first);
        }
        _read.store(start + count, std::memory_order_release);
        return count;
    }

  private:
    [[nodiscard]] std::uint32_t position(std::uint64_t count) const noexcept {
        return static_cast<std::uint32_t>(count % capacity());
    }

    PlanarBuffer _samples;
    std::atomic<std::uint64_t> _read{0};
    std::atomic<std::uint64_t> _written{0};
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A ring of float frames, one plane per channel, between one writer and one reader.
//
// Crosses threads: the two counters, each written by one side only; the samples between them belong to the
// reader, the others to the writer. `configure` and `clear` need both sides excluded.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <vector>

namespace platform {

class FrameRing {
  public:
    /// Holds up to `capacity` frames of `channels` channels; empties.
    void configure(std::uint32_t channels, std::uint32_t capacity) {
        _channels = channels;
        _capacity = capacity;
        _samples.assign(static_cast<std::size_t>(channels) * capacity, 0.0F);
        clear();
    }
    void clear() noexcept {
        _read.store(0, std::memory_order_relaxed);
        _written.store(0, std::memory_order_relaxed);
    }

    [[nodiscard]] std::uint32_t channels() const noexcept { return _channels; }
    [[nodiscard]] std::uint32_t capacity() const noexcept { return _capacity; }
    /// Returns the number of frames to read; to the reader at least that, to the writer at most.
    [[nodiscard]] std::uint32_t readable() const noexcept {
        const std::uint64_t read = _read.load(std::memory_order_acquire);
        return static_cast<std::uint32_t>(_written.load(std::memory_order_acquire) - read);
    }

    /// Writer: give the number of frames that can be written in one piece, and where.
    [[nodiscard]] std::uint32_t writable() const noexcept {
        const std::uint64_t written = _written.load(std::memory_order_relaxed);
        const auto used = static_cast<std::uint32_t>(written - _read.load(std::memory_order_acquire));
        return std::min(_capacity - used, _capacity - position(written));
    }
    [[nodiscard]] float* writePlane(std::uint32_t channel) noexcept {
        return plane(channel) + position(_written.load(std::memory_order_relaxed));
    }
    /// Writer: hand `frames` frames, at most `writable()`, over to the reader.
    void commit(std::uint32_t frames) noexcept {
        _written.store(_written.load(std::memory_order_relaxed) + frames, std::memory_order_release);
    }

    /// Reader: copy up to `frames` frames behind `offset` in `planes`; returns their number.
    std::uint32_t read(float* const* planes, std::uint32_t offset, std::uint32_t frames) noexcept {
        const std::uint64_t start = _read.load(std::memory_order_relaxed);
        const auto held = static_cast<std::uint32_t>(_written.load(std::memory_order_acquire) - start);
        const std::uint32_t count = std::min(frames, held);
        const std::uint32_t from = position(start);
        const std::uint32_t first = std::min(count, _capacity - from);
        for (std::uint32_t channel = 0; channel < _channels; ++channel) {
            const float* source = plane(channel);
            std::copy_n(source + from, first, planes[channel] + offset);
            std::copy_n(source, count - first, planes[channel] + offset + first);
        }
        _read.store(start + count, std::memory_order_release);
        return count;
    }

  private:
    [[nodiscard]] std::uint32_t position(std::uint64_t count) const noexcept {
        return static_cast<std::uint32_t>(count % _capacity);
    }
    [[nodiscard]] float* plane(std::uint32_t channel) noexcept {
        return _samples.data() + static_cast<std::size_t>(channel) * _capacity;
    }

    std::vector<float> _samples;
    std::uint32_t _channels = 0;
    std::uint32_t _capacity = 0;
    std::atomic<std::uint64_t> _read{0};
    std::atomic<std::uint64_t> _written{0};
};

} // namespace platform

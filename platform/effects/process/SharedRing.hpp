// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A queue of variable-length records in memory that two processes share. Neither side waits or allocates, and
// neither relies on what the other one writes: each keeps its own position, checks every size that it reads,
// and copies a record before it uses it. A queue whose counters make no sense is empty, or full, for good.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace platform::lv2 {

/// The part of a queue that both sides see: how many bytes were written and read in all. Each side stores one
/// counter with release order and loads the other with acquire order.
struct RingCounters {
    alignas(64) std::atomic<std::uint64_t> written{0};
    alignas(64) std::atomic<std::uint64_t> read{0};
};

/// One end of a queue: either only writes or only reads. One thread at a time.
class SharedRing {
  public:
    /// The size of `bytes` is a power of two. Each record takes 4 bytes in addition to its content.
    SharedRing(RingCounters& counters, std::span<std::byte> bytes) noexcept
        : _counters(&counters)
        , _bytes(bytes) {}

    /// Appends a record of two parts, or returns false if there is no space for it. Writing end.
    bool write(std::span<const std::byte> head, std::span<const std::byte> tail = {}) noexcept {
        const std::uint64_t used = _position - _counters->read.load(std::memory_order_acquire);
        const std::size_t size = head.size() + tail.size();
        if (used > _bytes.size() || size > UINT32_MAX ||
            sizeof(std::uint32_t) + size > _bytes.size() - used) {
            return false;
        }
        const auto length = static_cast<std::uint32_t>(size);
        put(_position, std::as_bytes(std::span(&length, 1)));
        put(_position + sizeof length, head);
        put(_position + sizeof length + head.size(), tail);
        _position += sizeof length + size;
        _counters->written.store(_position, std::memory_order_release);
        return true;
    }

    /// Returns whether there is a record. It is what the following operations are about until the next call.
    /// Reading end.
    [[nodiscard]] bool hasRecord() noexcept {
        const std::uint64_t available = _counters->written.load(std::memory_order_acquire) - _position;
        if (available < sizeof _size || available > _bytes.size()) return false;
        get(_position, std::as_writable_bytes(std::span(&_size, 1)));
        return _size <= available - sizeof _size;
    }
    /// Returns the size of the record in bytes. Reading end.
    [[nodiscard]] std::size_t recordSize() const noexcept { return _size; }
    /// Fills `into` with the bytes of the record from `offset` on, which must be within it. Reading end.
    void peek(std::size_t offset, std::span<std::byte> into) const noexcept {
        get(_position + sizeof _size + offset, into);
    }
    void peek(std::span<std::byte> into) const noexcept { peek(0, into); }
    /// Removes the record. Reading end.
    void drop() noexcept {
        _position += sizeof _size + _size;
        _counters->read.store(_position, std::memory_order_release);
    }

  private:
    void put(std::uint64_t position, std::span<const std::byte> bytes) noexcept {
        const std::size_t at = position & (_bytes.size() - 1);
        const std::size_t first = std::min(bytes.size(), _bytes.size() - at);
        if (first > 0) std::memcpy(&_bytes[at], bytes.data(), first);
        if (first < bytes.size()) std::memcpy(&_bytes[0], bytes.data() + first, bytes.size() - first);
    }
    void get(std::uint64_t position, std::span<std::byte> bytes) const noexcept {
        const std::size_t at = position & (_bytes.size() - 1);
        const std::size_t first = std::min(bytes.size(), _bytes.size() - at);
        if (first > 0) std::memcpy(bytes.data(), &_bytes[at], first);
        if (first < bytes.size()) std::memcpy(bytes.data() + first, &_bytes[0], bytes.size() - first);
    }

    RingCounters* _counters;
    std::span<std::byte> _bytes;
    std::uint64_t _position = 0; // that of this end
    std::uint32_t _size = 0;     // of the record
};

} // namespace platform::lv2

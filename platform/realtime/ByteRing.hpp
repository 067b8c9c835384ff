// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A lock-free queue of records of any length between one writing and one reading thread. Neither side ever
// allocates or waits. A record is one part or two that follow each other, read back as one.
// What crosses: the bytes and two counters; each counter is written by one side and released to the other.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

namespace platform {

class ByteRing {
  public:
    /// Makes a ring for at least `capacity` bytes, each record with 4 bytes for its length.
    explicit ByteRing(std::size_t capacity)
        : _mask(std::bit_ceil(std::max<std::size_t>(capacity, 64)) - 1)
        , _bytes(std::make_unique_for_overwrite<std::byte[]>(_mask + 1)) {}

    /// Appends a record; false when it does not fit. The writing thread.
    bool write(std::span<const std::byte> head, std::span<const std::byte> tail = {}) noexcept {
        const std::size_t end = _written.load(std::memory_order_relaxed);
        const std::size_t used = end - _read.load(std::memory_order_acquire);
        const std::size_t size = head.size() + tail.size();
        if (size > UINT32_MAX || sizeof(std::uint32_t) + size > _mask + 1 - used) return false;
        const auto length = static_cast<std::uint32_t>(size);
        put(end, std::as_bytes(std::span(&length, 1)));
        put(end + sizeof length, head);
        put(end + sizeof length + head.size(), tail);
        _written.store(end + sizeof length + size, std::memory_order_release);
        return true;
    }

    /// Returns whether there is a record. The reading thread.
    [[nodiscard]] bool hasRecord() const noexcept {
        return _read.load(std::memory_order_relaxed) != _written.load(std::memory_order_acquire);
    }
    /// Returns the size of the first record; there must be one. The reading thread.
    [[nodiscard]] std::size_t recordSize() const noexcept {
        std::uint32_t length = 0;
        get(_read.load(std::memory_order_relaxed), std::as_writable_bytes(std::span(&length, 1)));
        return length;
    }
    /// Copies the first bytes of the first record and leaves it in its place. The reading thread.
    void peek(std::span<std::byte> into) const noexcept {
        get(_read.load(std::memory_order_relaxed) + sizeof(std::uint32_t), into);
    }
    /// Copies the bytes of the first record from `offset` on, and leaves it. The reading thread.
    void peek(std::size_t offset, std::span<std::byte> into) const noexcept {
        get(_read.load(std::memory_order_relaxed) + sizeof(std::uint32_t) + offset, into);
    }
    /// Drops the first record. The reading thread.
    void drop() noexcept {
        const std::size_t from = _read.load(std::memory_order_relaxed);
        _read.store(from + sizeof(std::uint32_t) + recordSize(), std::memory_order_release);
    }
    /// Moves the first record into `into`; false when there is none. The reading thread; allocates.
    bool read(std::vector<std::byte>& into) {
        if (!hasRecord()) return false;
        into.resize(recordSize());
        peek(into);
        drop();
        return true;
    }

  private:
    void put(std::size_t at, std::span<const std::byte> bytes) noexcept {
        const std::size_t first = std::min(bytes.size(), _mask + 1 - (at & _mask));
        if (first > 0) std::memcpy(&_bytes[at & _mask], bytes.data(), first);
        if (first < bytes.size()) std::memcpy(&_bytes[0], bytes.data() + first, bytes.size() - first);
    }
    void get(std::size_t at, std::span<std::byte> bytes) const noexcept {
        const std::size_t first = std::min(bytes.size(), _mask + 1 - (at & _mask));
        if (first > 0) std::memcpy(bytes.data(), &_bytes[at & _mask], first);
        if (first < bytes.size()) std::memcpy(bytes.data() + first, &_bytes[0], bytes.size() - first);
    }

    const std::size_t _mask;
    const std::unique_ptr<std::byte[]> _bytes;
    alignas(64) std::atomic<std::size_t> _written{0}; // bytes ever; by the writer
    alignas(64) std::atomic<std::size_t> _read{0};    // bytes ever; by the reader
};

} // namespace platform

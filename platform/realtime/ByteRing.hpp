// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A lock-free queue of variable-length records between one writing thread and one reading thread. Neither
// side waits, and only the constructor and `read` allocate. A record can be written in two parts, which are
// concatenated. Shared between threads: the bytes and two counters. Each side writes one counter with release
// order and reads the other with acquire order.
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
    /// Creates a ring for at least `capacity` bytes. Each record takes 4 bytes in addition to its content.
    explicit ByteRing(std::size_t capacity)
        : _mask(std::bit_ceil(std::max<std::size_t>(capacity, 64)) - 1)
        , _bytes(std::make_unique_for_overwrite<std::byte[]>(_mask + 1)) {}

    /// Appends a record, or returns false if it does not fit. Writing thread.
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

    /// Returns whether there is a record. Reading thread.
    [[nodiscard]] bool hasRecord() const noexcept {
        return _read.load(std::memory_order_relaxed) != _written.load(std::memory_order_acquire);
    }
    /// Returns the size of the first record in bytes; there must be a record. Reading thread.
    [[nodiscard]] std::size_t recordSize() const noexcept {
        std::uint32_t length = 0;
        get(_read.load(std::memory_order_relaxed), std::as_writable_bytes(std::span(&length, 1)));
        return length;
    }
    /// Fills `into` with the first bytes of the first record, without removing it. Reading thread.
    void peek(std::span<std::byte> into) const noexcept {
        get(_read.load(std::memory_order_relaxed) + sizeof(std::uint32_t), into);
    }
    /// Fills `into` with the bytes of the first record from `offset` on, without removing it. Reading thread.
    void peek(std::size_t offset, std::span<std::byte> into) const noexcept {
        get(_read.load(std::memory_order_relaxed) + sizeof(std::uint32_t) + offset, into);
    }
    /// Removes the first record. Reading thread.
    void drop() noexcept {
        const std::size_t from = _read.load(std::memory_order_relaxed);
        _read.store(from + sizeof(std::uint32_t) + recordSize(), std::memory_order_release);
    }
    /// Moves the first record to `into`, or returns false if there is none. Reading thread; allocates.
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
    alignas(64) std::atomic<std::size_t> _written{0}; // total number of bytes; stored by the writer
    alignas(64) std::atomic<std::size_t> _read{0};    // total number of bytes; stored by the reader
};

} // namespace platform

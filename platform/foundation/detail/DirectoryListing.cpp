// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/DirectoryListing.hpp"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>

namespace platform::detail {
namespace {

constexpr std::size_t BufferSize = 128 * 1024;

// Returns up to eight bytes of `text` as a number whose most significant byte is the first one. Advances
// `text` past these bytes.
std::uint64_t takeKey(const char*& text) noexcept {
    std::uint64_t key = 0;
    for (unsigned shift = 64; shift > 0 && *text != '\0'; ++text) {
        shift -= 8;
        key |= std::uint64_t{static_cast<unsigned char>(*text)} << shift;
    }
    return key;
}

} // namespace

int DirectoryListing::read(int directory) {
    thread_local const auto buffer = std::make_unique<char[]>(BufferSize); // reused for all directories
    _text.clear();
    _entries.clear();
    _position = 0;
    int error = 0;
    while (true) {
        const ssize_t length = ::getdents64(directory, buffer.get(), BufferSize);
        if (length <= 0) {
            if (length < 0 && errno != ENOENT) error = errno; // ENOENT: the directory was removed
            break;
        }
        for (const char* at = buffer.get(); at < buffer.get() + length;) {
            const auto* entry = reinterpret_cast<const dirent64*>(at);
            at += entry->d_reclen;
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) continue;
            _entries.push_back({0, 0, _text.size()});
            _text.push_back(static_cast<char>(entry->d_type));
            _text.insert(_text.end(), name, name + std::strlen(name) + 1);
        }
    }
    sort();
    return error;
}

void DirectoryListing::sort() {
    if (_entries.size() < 2) return;
    const char* first = &_text[_entries.front().offset + 1];
    std::size_t common = std::strlen(first);
    for (const Entry& entry : _entries) {
        const char* name = &_text[entry.offset + 1];
        std::size_t same = 0;
        while (same < common && name[same] == first[same]) ++same;
        common = same;
    }
    for (Entry& entry : _entries) {
        const char* rest = &_text[entry.offset + 1 + common];
        entry.key = takeKey(rest);
        entry.secondKey = takeKey(rest);
    }
    std::sort(_entries.begin(), _entries.end(), [this, common](const Entry& a, const Entry& b) {
        if (a.key != b.key) return a.key < b.key;
        if (a.secondKey != b.secondKey) return a.secondKey < b.secondKey;
        return std::strcmp(&_text[a.offset + 1 + common], &_text[b.offset + 1 + common]) < 0;
    });
}

bool DirectoryListing::advance() noexcept {
    if (_position == _entries.size()) return false;
    ++_position;
    // The names are stored in the order of the directory, so each access in a large directory would be a
    // cache miss.
    constexpr std::size_t Ahead = 8;
    if (_position + Ahead < _entries.size()) __builtin_prefetch(&_text[_entries[_position + Ahead].offset]);
    return true;
}

} // namespace platform::detail

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/FileKind.hpp"

#include <array>
#include <atomic>
#include <grp.h>
#include <memory>
#include <mutex>
#include <pwd.h>
#include <unordered_map>
#include <vector>

namespace platform::detail {
namespace {

constexpr std::uint32_t BlockSize = 1024;
constexpr std::uint32_t BlockCount = 4096;
using Block = std::array<FileKind, BlockSize>;

struct Hash {
    std::size_t operator()(const FileKind& kind) const noexcept {
        std::uint64_t hash = kind.device;
        for (const std::uint64_t field :
             {std::uint64_t{kind.mode}, std::uint64_t{kind.links}, std::uint64_t{kind.owner},
              std::uint64_t{kind.group},
              (kind.isImmutable ? std::uint64_t{1} : 0) | (kind.isAppendOnly ? std::uint64_t{2} : 0)}) {
            hash = (hash ^ field) * 0x9E3779B97F4A7C15U ^ (hash >> 29U);
        }
        return hash;
    }
};

// Kinds are never moved or removed, so reading them needs no lock: a number is returned only after its kind
// has been written, and passing the number to another thread already synchronises the two threads.
struct KindTable {
    std::mutex mutex; // guards `numbers`, `count` and the writing of blocks
    std::unordered_map<FileKind, std::uint32_t, Hash> numbers;
    std::uint32_t count = 0;
    std::array<std::atomic<Block*>, BlockCount> blocks{};
};

KindTable& kindTable() {
    static auto* table = new KindTable; // never destroyed, because statics may use it
    return *table;
}

template <class Entry, class Ask>
std::optional<std::string> nameOf(std::uint32_t number, Ask ask) {
    static auto* mutex = new std::mutex;
    static auto* names =
        new std::unordered_map<std::uint32_t, std::optional<std::string>>; // guarded by mutex
    const std::scoped_lock lock(*mutex);
    if (const auto found = names->find(number); found != names->end()) return found->second;
    Entry entry{};
    Entry* answer = nullptr;
    std::vector<char> buffer(4096);
    while (ask(number, &entry, buffer.data(), buffer.size(), &answer) == ERANGE &&
           buffer.size() < 1U << 24U) {
        buffer.resize(buffer.size() * 2);
    }
    std::optional<std::string> name;
    if (answer != nullptr) {
        if constexpr (std::is_same_v<Entry, passwd>) {
            name = answer->pw_name;
        } else {
            name = answer->gr_name;
        }
    }
    return names->emplace(number, name).first->second;
}

} // namespace

std::uint32_t numberOfKind(const FileKind& kind) {
    // Items that are read one after the other often have the same kind.
    thread_local FileKind last;
    thread_local std::uint32_t lastNumber = 0;
    if (lastNumber != 0 && kind == last) return lastNumber;

    KindTable& table = kindTable();
    const std::scoped_lock lock(table.mutex);
    const auto [entry, isNew] = table.numbers.try_emplace(kind, table.count + 1);
    if (isNew) {
        if (table.count == BlockSize * BlockCount) {
            table.numbers.erase(entry);
            return 0;
        }
        std::atomic<Block*>& block = table.blocks[table.count / BlockSize];
        if (table.count % BlockSize == 0) block.store(new Block, std::memory_order_release);
        (*block.load(std::memory_order_relaxed))[table.count % BlockSize] = kind;
        ++table.count;
    }
    last = kind;
    lastNumber = entry->second;
    return lastNumber;
}

const FileKind& kindOfNumber(std::uint32_t number) noexcept {
    const Block& block = *kindTable().blocks[(number - 1) / BlockSize].load(std::memory_order_acquire);
    return block[(number - 1) % BlockSize];
}

std::optional<std::string> userName(std::uint32_t user) {
    return nameOf<passwd>(user, ::getpwuid_r);
}

std::optional<std::string> groupName(std::uint32_t group) {
    return nameOf<::group>(group, ::getgrgid_r);
}

} // namespace platform::detail

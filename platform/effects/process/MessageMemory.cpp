// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/process/MessageMemory.hpp"

#include <bit>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace platform::lv2 {
namespace {

constexpr std::size_t LeastBytes = 4096;

Error failure() {
    const char* reason = ::strerrordesc_np(errno);
    return {"LV2", 5,
            std::string("The memory for messages to an effect's process cannot be used (") +
                (reason != nullptr ? reason : "unknown error") + ")."};
}

std::byte* map(const Descriptor& file, std::size_t bytes) {
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    return memory == MAP_FAILED ? nullptr : static_cast<std::byte*>(memory);
}

} // namespace

MessageMemory::MessageMemory(Descriptor file, std::byte* memory, std::size_t bytesToProcess,
                             std::size_t bytesToHost)
    : _file(std::move(file))
    , _memory(memory)
    , _bytesToProcess(bytesToProcess)
    , _bytesToHost(bytesToHost)
    , _header(std::launder(reinterpret_cast<MessageHeader*>(memory))) {}

MessageMemory::MessageMemory(MessageMemory&& other) noexcept
    : _file(std::move(other._file))
    , _memory(std::exchange(other._memory, nullptr))
    , _bytesToProcess(other._bytesToProcess)
    , _bytesToHost(other._bytesToHost)
    , _header(other._header) {}

MessageMemory::~MessageMemory() {
    if (_memory != nullptr) ::munmap(_memory, sizeof(MessageHeader) + _bytesToProcess + _bytesToHost);
}

Result<MessageMemory> MessageMemory::create(std::size_t bytesToProcess, std::size_t bytesToHost) {
    bytesToProcess = std::bit_ceil(std::max(bytesToProcess, LeastBytes));
    bytesToHost = std::bit_ceil(std::max(bytesToHost, LeastBytes));
    const std::size_t bytes = sizeof(MessageHeader) + bytesToProcess + bytesToHost;
    Descriptor file(::memfd_create("messages", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file || ::ftruncate(file.get(), static_cast<off_t>(bytes)) != 0 ||
        ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        return failure();
    }
    std::byte* memory = map(file, bytes);
    if (memory == nullptr) return failure();
    auto* header = new (memory) MessageHeader;
    header->bytesToProcess = static_cast<std::uint32_t>(bytesToProcess);
    header->bytesToHost = static_cast<std::uint32_t>(bytesToHost);
    return MessageMemory(std::move(file), memory, bytesToProcess, bytesToHost);
}

Result<MessageMemory> MessageMemory::open(Descriptor file) {
    const off_t bytes = ::lseek(file.get(), 0, SEEK_END);
    if (bytes < static_cast<off_t>(sizeof(MessageHeader))) return failure();
    std::byte* memory = map(file, static_cast<std::size_t>(bytes));
    if (memory == nullptr) return failure();
    const auto* header = std::launder(reinterpret_cast<MessageHeader*>(memory));
    return MessageMemory(std::move(file), memory, header->bytesToProcess, header->bytesToHost);
}

SharedRing MessageMemory::toProcess() const noexcept {
    return {_header->toProcess, {_memory + sizeof(MessageHeader), _bytesToProcess}};
}

SharedRing MessageMemory::toHost() const noexcept {
    return {_header->toHost, {_memory + sizeof(MessageHeader) + _bytesToProcess, _bytesToHost}};
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/process/BlockMemory.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <string>
#include <sys/mman.h>
#include <utility>

namespace platform::lv2 {
namespace {

constexpr std::size_t Page = 65536; // the largest page size of all supported machines
constexpr std::size_t PlaneBytes = BlockMemory::LongestBlock * sizeof(float);
static_assert(PlaneBytes % 4096 == 0);

constexpr std::size_t wholePages(std::size_t bytes) {
    return (bytes + Page - 1) / Page * Page;
}

// The memory contains the header and the values, then the MIDI area, then the planes. Each plane is between
// two inaccessible pages.
struct Layout {
    explicit Layout(const BlockMemory::Shape& shape)
        : midi(wholePages(sizeof(BlockHeader) + shape.ports * sizeof(std::atomic<float>)))
        , planes(midi + wholePages(BlockMemory::MidiBytes) + Page)
        , stride(wholePages(PlaneBytes) + Page)
        , bytes(planes + std::size_t{shape.inputs + shape.outputs} * stride) {}

    std::size_t midi, planes, stride, bytes;
};

Error failure(const char* what) {
    const char* reason = ::strerrordesc_np(errno);
    return {"LV2", 5,
            std::string("The memory for an effect's process cannot be ") + what + " (" +
                (reason != nullptr ? reason : "unknown error") + ")."};
}

std::byte* map(int file, std::size_t bytes) {
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<std::byte*>(memory);
}

} // namespace

BlockMemory::BlockMemory(Descriptor file, const Shape& shape, std::byte* memory)
    : _file(std::move(file))
    , _shape(shape)
    , _memory(memory)
    , _header(std::launder(reinterpret_cast<BlockHeader*>(memory)))
    , _values(std::launder(reinterpret_cast<std::atomic<float>*>(memory + sizeof(BlockHeader)))) {
    const Layout layout(shape);
    _midi = memory + layout.midi;
    for (std::size_t i = 0; i < std::size_t{shape.inputs} + shape.outputs; ++i) {
        // Each plane ends at the end of its pages, because most faulty effects write past the end and not
        // before the start.
        _planes.push_back(reinterpret_cast<float*>(memory + layout.planes + i * layout.stride +
                                                   (layout.stride - Page - PlaneBytes)));
    }
}

BlockMemory::BlockMemory(BlockMemory&& other) noexcept
    : _file(std::move(other._file))
    , _shape(other._shape)
    , _memory(std::exchange(other._memory, nullptr))
    , _header(other._header)
    , _values(other._values)
    , _midi(other._midi)
    , _planes(std::move(other._planes)) {}

BlockMemory::~BlockMemory() {
    if (_memory != nullptr) ::munmap(_memory, Layout(_shape).bytes);
}

Result<BlockMemory> BlockMemory::create(const Shape& shape) {
    const Layout layout(shape);
    Descriptor file(::memfd_create("effect", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!file || ::ftruncate(file.get(), static_cast<off_t>(layout.bytes)) != 0 ||
        ::fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        return failure("created");
    }
    std::byte* memory = map(file.get(), layout.bytes);
    if (memory == nullptr) return failure("mapped");
    new (memory) BlockHeader;
    for (std::size_t i = 0; i < shape.ports; ++i) {
        new (memory + sizeof(BlockHeader) + i * sizeof(std::atomic<float>)) std::atomic<float>{0.0F};
    }
    return BlockMemory(std::move(file), shape, memory);
}

Result<BlockMemory> BlockMemory::open(Descriptor file, const Shape& shape) {
    const Layout layout(shape);
    std::byte* memory = map(file.get(), layout.bytes);
    if (memory == nullptr) return failure("mapped");
    BlockMemory opened(std::move(file), shape, memory);
    for (std::size_t at = layout.planes - Page; at < layout.bytes; at += layout.stride) {
        if (::mprotect(memory + at, Page, PROT_NONE) != 0) return failure("protected");
    }
    return opened;
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads and writes queues whose memory and counters another process changes at will.
#include "tests/fuzz/fuzz.hpp"

#include "platform/effects/process/MessageMemory.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

using namespace platform::lv2;

namespace {

constexpr std::size_t Bytes = 64, Guard = 64;

std::uint64_t takeNumber(std::string_view& input, std::size_t most = sizeof(std::uint64_t)) {
    std::uint64_t number = 0;
    const std::string_view taken = input.substr(0, most);
    if (!taken.empty()) std::memcpy(&number, taken.data(), taken.size());
    input.remove_prefix(taken.size());
    return number;
}

// A queue between two guards.
struct Queue {
    RingCounters counters;
    std::vector<std::byte> memory = std::vector<std::byte>(Bytes + 2 * Guard, std::byte{0xa5});
    SharedRing reader{counters, std::span(memory).subspan(Guard, Bytes)};
    SharedRing writer{counters, std::span(memory).subspan(Guard, Bytes)};

    [[nodiscard]] bool isWhole() const {
        const auto isUntouched = [](std::byte value) { return value == std::byte{0xa5}; };
        return std::all_of(memory.begin(), memory.begin() + Guard, isUntouched) &&
               std::all_of(memory.end() - Guard, memory.end(), isUntouched);
    }
};

void read(Queue& queue, std::size_t most) {
    for (std::size_t i = 0; i < most && queue.reader.hasRecord(); ++i) {
        const std::size_t size = queue.reader.recordSize();
        require(size <= Bytes - sizeof(std::uint32_t));
        std::vector<std::byte> record(size);
        queue.reader.peek(record);
        if (size > 4) queue.reader.peek(4, std::span(record).subspan(4));
        require(queue.reader.recordSize() == size); // whatever is in the memory by now
        queue.reader.drop();
    }
}

} // namespace

void fuzzOne(std::string_view input) {
    Queue queue;
    while (!input.empty()) {
        const auto step = static_cast<unsigned char>(input[0]);
        input.remove_prefix(1);
        switch (step % 6) {
        case 0:
            queue.counters.written.store(takeNumber(input));
            break;
        case 1:
            queue.counters.read.store(takeNumber(input));
            break;
        case 2: // a small change of a counter
            queue.counters.written.fetch_add(takeNumber(input, 1));
            break;
        case 3: {
            const std::size_t at = Guard + takeNumber(input, 1) % (Bytes - sizeof(std::uint64_t) + 1);
            const std::uint64_t number = takeNumber(input);
            std::memcpy(&queue.memory[at], &number, sizeof number);
            break;
        }
        case 4: {
            const std::vector<std::byte> head(takeNumber(input, 1) % 70), tail(takeNumber(input, 1) % 70);
            if (queue.writer.write(head, tail)) require(head.size() + tail.size() + 4 <= Bytes);
            break;
        }
        default:
            read(queue, step / 6 + 1U);
        }
        require(queue.isWhole());
    }
}

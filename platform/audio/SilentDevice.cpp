// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/SilentDevice.hpp"

#include "platform/realtime/Gate.hpp"
#include "platform/realtime/PlanarBuffer.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>

namespace platform {

// The state that the thread uses. If the client's render call does not return, only the thread still holds a
// reference.
struct SilentDevice::Run {
    std::shared_ptr<OutputClient> client;
    AVAudioFormat format;
    std::uint32_t blockFrames = 0;
    std::atomic<bool> isOver{false}; // read by the thread before every block
    Gate gate{};                     // around each call of the client

    void play();
};

SilentDevice::SilentDevice(AVAudioFormat format, std::uint32_t blockFrames)
    : _format(format)
    , _blockFrames(std::max(blockFrames, 1U)) {}

SilentDevice::~SilentDevice() {
    stop();
}

std::optional<Error> SilentDevice::start(std::shared_ptr<OutputClient> client) {
    const std::scoped_lock lock(_mutex);
    if (_run) return outputIsInUse();
    _run = std::make_shared<Run>();
    _run->client = std::move(client);
    _run->format = _format;
    _run->blockFrames = _blockFrames;
    _run->gate.open();
    _thread = std::thread([run = _run] { run->play(); });
    return std::nullopt;
}

void SilentDevice::stop() noexcept {
    std::shared_ptr<Run> released; // destroyed after unlocking
    const std::scoped_lock lock(_mutex);
    if (!_run) return;
    _run->isOver = true;
    if (_run->gate.close()) {
        _thread.join();
    } else {
        _thread.detach();
    }
    released.swap(_run);
}

void SilentDevice::Run::play() {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds Lag{500};
    const auto period = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(static_cast<double>(blockFrames) / format.sampleRate));
    PlanarBuffer sound(format.channelCount, blockFrames);
    for (auto next = Clock::now(); !isOver; std::this_thread::sleep_until(next)) {
        {
            const RealtimeScope realtime;
            if (const Gate::Passage inside = gate.enter()) client->render(sound.view(), format.sampleRate);
        }
        next += period;
        // After the machine was suspended, the missed blocks are skipped.
        if (const auto now = Clock::now(); now - next > Lag) next = now;
    }
}

} // namespace platform

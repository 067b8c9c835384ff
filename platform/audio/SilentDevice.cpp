// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/SilentDevice.hpp"

#include <algorithm>
#include <chrono>
#include <vector>

namespace platform {

SilentDevice::SilentDevice(AVAudioFormat format, std::uint32_t blockFrames)
    : _format(format)
    , _blockFrames(std::max(blockFrames, 1U)) {}

SilentDevice::~SilentDevice() {
    stop();
}

std::optional<Error> SilentDevice::start(std::shared_ptr<OutputClient> client) {
    const std::scoped_lock lock(_mutex);
    if (_client) return outputIsInUse();
    _client = std::move(client);
    _running = true;
    _thread = std::thread([this, &heard = *_client] { run(heard); });
    return std::nullopt;
}

void SilentDevice::stop() noexcept {
    std::shared_ptr<OutputClient> released; // outlives the lock
    const std::scoped_lock lock(_mutex);
    if (!_client) return;
    _running = false;
    _thread.join();
    released.swap(_client);
}

void SilentDevice::run(OutputClient& client) const {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds Lag{500};
    const auto period = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(static_cast<double>(_blockFrames) / _format.sampleRate));
    std::vector<float> samples(static_cast<std::size_t>(_blockFrames) * _format.channelCount);
    std::vector<float*> planes;
    for (std::uint32_t c = 0; c < _format.channelCount; ++c) {
        planes.push_back(samples.data() + static_cast<std::size_t>(c) * _blockFrames);
    }
    for (auto next = Clock::now(); _running; std::this_thread::sleep_until(next)) {
        client.render(planes.data(), _format, _blockFrames);
        next += period;
        if (const auto now = Clock::now(); now - next > Lag) {
            next = now; // the machine slept: nothing to catch up with
        }
    }
}

} // namespace platform

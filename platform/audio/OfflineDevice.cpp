// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/OfflineDevice.hpp"

#include <algorithm>
#include <thread>

namespace platform {

OfflineDevice::OfflineDevice(AVAudioFormat format, std::uint32_t blockFrames)
    : _format(format)
    , _blockFrames(std::max(blockFrames, 1U)) {}

std::unique_lock<std::mutex> OfflineDevice::lockBetweenBlocks() {
    ++_othersWait;
    std::unique_lock lock(_mutex);
    --_othersWait;
    return lock;
}

std::optional<Error> OfflineDevice::open() {
    ++_claims;
    return std::nullopt;
}

void OfflineDevice::close() noexcept {
    --_claims;
}

std::optional<Error> OfflineDevice::start(std::shared_ptr<OutputClient> client) {
    const auto lock = lockBetweenBlocks();
    if (_client) return outputIsInUse();
    _client = std::move(client);
    return std::nullopt;
}

void OfflineDevice::stop() noexcept {
    std::shared_ptr<OutputClient> released; // outlives the lock
    const auto lock = lockBetweenBlocks();
    released.swap(_client);
}

AVAudioFormat OfflineDevice::format() const noexcept {
    const std::scoped_lock lock(_formatMutex);
    return _format;
}

void OfflineDevice::render(float* const* planes, std::uint64_t frames) {
    render(format(), planes, frames);
}

void OfflineDevice::render(const AVAudioFormat& format, float* const* planes, std::uint64_t frames) {
    std::vector<float*> at(planes, planes + format.channelCount);
    while (frames > 0) {
        const auto count = static_cast<std::uint32_t>(std::min<std::uint64_t>(frames, _blockFrames));
        while (_othersWait.load() > 0) std::this_thread::yield(); // a lock knows no order, a render no pause
        {
            const std::scoped_lock lock(_mutex); // for one block
            if (_client) {
                _client->render(at.data(), format, count);
            } else {
                for (float* plane : at) std::fill_n(plane, count, 0.0F);
            }
        }
        for (float*& plane : at) plane += count;
        frames -= count;
    }
}

std::vector<std::vector<float>> OfflineDevice::render(std::uint64_t frames) {
    const AVAudioFormat format = this->format();
    std::vector<std::vector<float>> sound(format.channelCount, std::vector<float>(frames));
    std::vector<float*> planes;
    planes.reserve(sound.size());
    for (std::vector<float>& plane : sound) planes.push_back(plane.data());
    render(format, planes.data(), frames);
    return sound;
}

void OfflineDevice::setFormat(AVAudioFormat format) {
    {
        const std::scoped_lock lock(_formatMutex);
        _format = format;
    }
    std::shared_ptr<OutputClient> client;
    {
        const auto lock = lockBetweenBlocks();
        client = _client;
    }
    if (client) client->outputFormatDidChange();
}

int OfflineDevice::claims() const {
    return _claims;
}

} // namespace platform

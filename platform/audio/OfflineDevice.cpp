// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/OfflineDevice.hpp"

#include "platform/foundation/console.hpp"
#include "platform/realtime/ProcessorHold.hpp"

#include <algorithm>

namespace platform {

OfflineDevice::OfflineDevice(AVAudioFormat format, std::uint32_t blockFrames)
    : _format(format)
    , _blockFrames(std::clamp(blockFrames, 1U, PlanarSound::MaximumFrames)) {}

std::optional<Error> OfflineDevice::open() {
    ++_claims;
    return std::nullopt;
}

void OfflineDevice::close() noexcept {
    --_claims;
}

std::optional<Error> OfflineDevice::start(std::shared_ptr<OutputClient> client) {
    const std::scoped_lock lock(_mutex);
    if (_run) return outputIsInUse();
    _run = std::make_shared<Run>();
    _run->client = std::move(client);
    _run->gate.open();
    return std::nullopt;
}

void OfflineDevice::stop() noexcept {
    std::shared_ptr<Run> released;
    {
        const std::scoped_lock lock(_mutex);
        released.swap(_run);
    }
    if (released) (void)released->gate.close();
}

AVAudioFormat OfflineDevice::format() const noexcept {
    const std::scoped_lock lock(_mutex);
    return _format;
}

std::optional<Error> OfflineDevice::render(float* const* planes, std::uint64_t frames) {
    return render(format(), planes, frames);
}

std::optional<Error> OfflineDevice::render(const AVAudioFormat& format, float* const* planes,
                                           std::uint64_t frames) {
    const ProcessorHold scope;
    std::vector<float*> at(planes, planes + format.channelCount);
    std::shared_ptr<Run> run;
    std::unique_lock<std::mutex> turn;
    while (frames > 0) {
        const auto count = static_cast<std::uint32_t>(std::min<std::uint64_t>(frames, _blockFrames));
        if (!run || !run->gate.isOpen()) { // otherwise `run` is still the current run
            if (turn) turn.unlock();
            {
                const std::scoped_lock lock(_mutex);
                run = _run;
            }
            if (run) turn = std::unique_lock(run->turn);
        }
        renderBlock(run.get(), {at.data(), format.channelCount, count}, format.sampleRate);
        for (float*& plane : at) plane += count;
        frames -= count;
    }
    return run ? run->client->failure() : std::nullopt;
}

void OfflineDevice::renderBlock(Run* run, PlanarSound sound, double sampleRate) {
    if (run != nullptr) {
        if (const Gate::Passage inside = run->gate.enter()) return run->client->render(sound, sampleRate);
    }
    fillWithSilence(sound);
}

std::vector<std::vector<float>> OfflineDevice::render(std::uint64_t frames) {
    const AVAudioFormat format = this->format();
    std::vector<std::vector<float>> sound(format.channelCount, std::vector<float>(frames));
    std::vector<float*> planes;
    planes.reserve(sound.size());
    for (std::vector<float>& plane : sound) planes.push_back(plane.data());
    if (const auto failure = render(format, planes.data(), frames)) warn(failure->localizedDescription());
    return sound;
}

void OfflineDevice::setFormat(AVAudioFormat format) {
    std::shared_ptr<Run> run;
    {
        const std::scoped_lock lock(_mutex);
        _format = format;
        run = _run;
    }
    if (run) run->client->outputFormatDidChange();
}

int OfflineDevice::claims() const {
    return _claims;
}

} // namespace platform

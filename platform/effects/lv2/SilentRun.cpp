// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/SilentRun.private.hpp"

#include <algorithm>
#include <chrono>

namespace platform::lv2 {
namespace {

constexpr std::uint32_t BlockFrames = 256;
constexpr std::uint32_t LongestBlock = 8192; // that the engine may ask for next
constexpr auto Tick = std::chrono::milliseconds(20);
constexpr int QuietTicks = 10; // without a block of the engine, until it counts as stopped
constexpr std::int64_t FirstSampleTime = -(std::int64_t{1} << 60);

} // namespace

SilentRun::SilentRun(std::shared_ptr<NodeProcessor> processor, double sampleRate)
    : _processor(std::move(processor))
    , _sampleRate(sampleRate) {}

SilentRun::~SilentRun() {
    setWanted(false);
}

std::optional<Error> SilentRun::allocate(double sampleRate, std::uint32_t maximumFrames) {
    const std::scoped_lock lock(_mutex);
    auto failure = _processor->allocate(sampleRate, maximumFrames);
    _isAllocatedByEngine = !failure;
    if (!failure) _sampleRate = sampleRate;
    return failure;
}

void SilentRun::release() noexcept {
    const std::scoped_lock lock(_mutex);
    _isAllocatedByEngine = false;
    if (!_isWanted) _processor->release();
}

void SilentRun::process(const float* const* inputs, float* const* outputs, std::uint32_t frames,
                        std::int64_t sampleTime) noexcept {
    _isRunByEngine.store(true, std::memory_order_relaxed);
    _processor->process(inputs, outputs, frames, sampleTime);
}

void SilentRun::setWanted(bool isWanted) {
    {
        const std::scoped_lock lock(_mutex);
        if (_isWanted == isWanted) return;
        _isWanted = isWanted;
    }
    _changed.notify_one();
    if (isWanted) {
        _thread = std::thread([this] { runUntilUnwanted(); });
    } else {
        _thread.join();
    }
}

void SilentRun::runUntilUnwanted() {
    std::int64_t sampleTime = FirstSampleTime;
    // A rate that fails here fails again, and is reported, where the engine asks for it.
    bool isReady = false;
    int quietTicks = 0;
    std::unique_lock lock(_mutex);
    while (!_changed.wait_for(lock, Tick, [this] { return !_isWanted; })) {
        quietTicks = _isRunByEngine.exchange(false, std::memory_order_relaxed) ? 0 : quietTicks + 1;
        if (quietTicks < QuietTicks) continue;
        if (!isReady || !_isAllocatedByEngine) isReady = !_processor->allocate(_sampleRate, LongestBlock);
        if (!isReady) return;
        lock.unlock();
        runFor(std::chrono::duration<double>(Tick).count(), sampleTime);
        lock.lock();
    }
    if (!_isAllocatedByEngine) _processor->release();
}

void SilentRun::runFor(double seconds, std::int64_t& sampleTime) {
    const std::vector<float> silence(BlockFrames);
    const std::vector<const float*> inputs(_processor->inputChannels(), silence.data());
    std::vector<std::vector<float>> unheard(_processor->outputChannels(), std::vector<float>(BlockFrames));
    std::vector<float*> outputs;
    for (auto& plane : unheard) outputs.push_back(plane.data());
    for (double left = seconds; left > 0 && !_isRunByEngine;) {
        const std::scoped_lock lock(_mutex); // so that the instance is not exchanged meanwhile
        _processor->process(inputs.data(), outputs.data(), BlockFrames, sampleTime);
        sampleTime += BlockFrames;
        left -= BlockFrames / _sampleRate;
    }
}

} // namespace platform::lv2

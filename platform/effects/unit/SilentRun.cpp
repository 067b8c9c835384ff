// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/unit/SilentRun.hpp"

#include "platform/effects/unit/runApart.hpp"
#include "platform/foundation/console.hpp"
#include "platform/realtime/Gate.hpp"
#include "platform/realtime/PlanarBuffer.hpp"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace platform::lv2 {
namespace {

constexpr std::uint32_t BlockFrames = 256;
constexpr std::uint32_t LongestBlock = 8192; // the longest block that the engine may request later
constexpr auto Tick = std::chrono::milliseconds(20);
constexpr int QuietTicks = 10; // ticks without a block from the engine until the engine counts as stopped
constexpr std::int64_t FirstSampleTime = -(std::int64_t{1} << 60);

} // namespace

// The state that the thread of a silent run uses. If an effect does not return, only the thread still holds a
// reference.
struct SilentRun::Loop {
    Loop(std::shared_ptr<NodeProcessor> runProcessor, double rate)
        : processor(std::move(runProcessor))
        , sampleRate(rate) {}

    void run();
    void renderFor(double seconds, double rate, std::int64_t& sampleTime);

    const std::shared_ptr<NodeProcessor> processor;
    // Whether the engine runs the effect. Shared between threads: set by the audio thread at each block,
    // cleared by the thread of the silent run. A block that the engine requests while a silent block is still
    // being processed is silent.
    std::atomic<bool> isRunByEngine{false};
    std::atomic<bool> isWanted{false};

    std::mutex
        mutex; // guards the members below and the processor's allocation; never locked by the audio thread
    std::condition_variable changed;
    bool isAllocatedByEngine = false;
    double sampleRate;
};

SilentRun::SilentRun(std::shared_ptr<NodeProcessor> processor, double sampleRate)
    : _loop(std::make_shared<Loop>(std::move(processor), sampleRate)) {}

SilentRun::~SilentRun() {
    setWanted(false);
}

std::string SilentRun::name() const {
    return _loop->processor->name();
}

std::uint32_t SilentRun::inputChannels() const noexcept {
    return _loop->processor->inputChannels();
}

std::uint32_t SilentRun::outputChannels() const noexcept {
    return _loop->processor->outputChannels();
}

void SilentRun::setBlockFrames(std::uint32_t frames) {
    _loop->processor->setBlockFrames(frames);
}

void SilentRun::setOffline(bool isOffline) {
    _loop->processor->setOffline(isOffline);
}

bool SilentRun::hasFailed() const noexcept {
    return _loop->processor->hasFailed();
}

std::uint32_t SilentRun::latencyFrames() const noexcept {
    return _loop->processor->latencyFrames();
}

std::optional<Error> SilentRun::allocate(double sampleRate, std::uint32_t maximumFrames) {
    const std::scoped_lock lock(_loop->mutex);
    auto failure = _loop->processor->allocate(sampleRate, maximumFrames);
    _loop->isAllocatedByEngine = !failure;
    if (!failure) _loop->sampleRate = sampleRate;
    return failure;
}

void SilentRun::release() noexcept {
    const std::scoped_lock lock(_loop->mutex);
    _loop->isAllocatedByEngine = false;
    if (!_loop->isWanted) _loop->processor->release();
}

void SilentRun::process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept {
    _loop->isRunByEngine.store(true, std::memory_order_relaxed);
    _loop->processor->process(inputs, outputs, sampleTime);
}

void SilentRun::setWanted(bool isWanted) {
    if (_loop->isWanted.exchange(isWanted) == isWanted) return;
    const bool isOver =
        !_ended.valid() || _ended.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    if (isWanted) {
        // A thread that has not ended since the last silent run continues.
        if (isOver) _ended = runApart([loop = _loop] { loop->run(); });
    } else if (!isOver) {
        _loop->changed.notify_one();
        if (_ended.wait_for(ControlLimit) != std::future_status::ready) {
            warn("The effect \"" + name() + "\" has not returned from rendering in " +
                 std::to_string(ControlLimit.count()) + " seconds.");
        }
    }
}

void SilentRun::Loop::run() {
    std::int64_t sampleTime = FirstSampleTime;
    // A failure is not reported here: it occurs again, and is reported, when the engine allocates the
    // processor.
    bool isReady = false;
    int quietTicks = 0;
    std::unique_lock lock(mutex);
    while (!changed.wait_for(lock, Tick, [this] { return !isWanted; })) {
        quietTicks = isRunByEngine.exchange(false, std::memory_order_relaxed) ? 0 : quietTicks + 1;
        if (quietTicks < QuietTicks) continue;
        if (!isReady || !isAllocatedByEngine) isReady = !processor->allocate(sampleRate, LongestBlock);
        if (!isReady) return;
        const double rate = sampleRate;
        lock.unlock(); // the processor's gate keeps this thread out while the instance is replaced
        renderFor(std::chrono::duration<double>(Tick).count(), rate, sampleTime);
        lock.lock();
    }
    if (!isAllocatedByEngine) processor->release();
}

void SilentRun::Loop::renderFor(double seconds, double rate, std::int64_t& sampleTime) {
    const PlanarBuffer silence(processor->inputChannels(), BlockFrames);
    PlanarBuffer unheard(processor->outputChannels(), BlockFrames);
    for (double left = seconds; left > 0 && !isRunByEngine; left -= BlockFrames / rate) {
        processor->process(silence.view(), unheard.view(), sampleTime);
        sampleTime += BlockFrames;
    }
}

} // namespace platform::lv2

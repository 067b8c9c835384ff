// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/PlayerStream.hpp"

#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/detail/mapChannels.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <cmath>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double RingSeconds = 0.2;
// How long a beginning that is shorter than half a ring waits for the pass that follows it.
constexpr std::chrono::milliseconds PrimingLimit{20};
// How long an offline render waits, after a completion has returned, for what it may have caused to be
// scheduled.
constexpr std::chrono::seconds ScheduleLimit{2};
// How long it waits in all, for a completion that does not return.
constexpr std::chrono::seconds CompletionLimit{10};

thread_local const PlayerStream* completing = nullptr; // the stream whose completion this thread runs

class Completing {
  public:
    explicit Completing(const PlayerStream* stream)
        : _outer(std::exchange(completing, stream)) {}
    ~Completing() { completing = _outer; }
    Completing(const Completing&) = delete;
    Completing& operator=(const Completing&) = delete;

  private:
    const PlayerStream* _outer;
};

void fillWithSilence(float* const* planes, std::uint32_t channels, std::uint32_t offset,
                     std::uint32_t frames) noexcept {
    for (std::uint32_t c = 0; c < channels; ++c) std::fill_n(planes[c] + offset, frames, 0.0F);
}

std::vector<float*> planesOf(std::vector<float>& samples, std::uint32_t channels, std::uint32_t frames) {
    samples.assign(static_cast<std::size_t>(channels) * frames, 0.0F);
    std::vector<float*> planes(channels);
    for (std::uint32_t c = 0; c < channels; ++c) {
        planes[c] = samples.data() + static_cast<std::size_t>(c) * frames;
    }
    return planes;
}

} // namespace

PlayerStream::PlayerStream() = default;
PlayerStream::~PlayerStream() = default;

void PlayerStream::schedule(std::shared_ptr<AVAudioFile> file, std::int64_t silentFrames,
                            std::function<void()> completion) {
    const std::scoped_lock lock(_mutex);
    if (_ended) return;
    _passes.push_back({std::move(file), silentFrames, std::move(completion)});
    _shared.passUnderWay = true;
    if (!_decoder.joinable()) _decoder = std::thread([this] { runDecoder(); });
    if (!_shared.offline || !_playing) wakeDecoder(); // an offline render decodes for itself, on one core
    _scheduleChanged.notify_all();
}

void PlayerStream::play() {
    const std::scoped_lock lock(_mutex);
    _playing = true;
    updateGate();
}

void PlayerStream::pause() {
    const std::scoped_lock lock(_mutex);
    _playing = false;
    updateGate();
    _scheduleChanged.notify_all();
}

void PlayerStream::stop() {
    {
        const std::scoped_lock lock(_mutex);
        _playing = false;
        _primed = false;
        updateGate();
        _shared.ring.clear();
        _shared.path.reset();
        _ringFormat = {};
        _writer.abandon();
        _shared.passUnderWay = false;
        for (Pass& pass : _passes) complete(std::move(pass.completion));
        _passes.clear();
        _scheduleChanged.notify_all();
    }
    if (completing != this) _completions.sync([] {});
}

bool PlayerStream::isPlaying() const {
    const std::scoped_lock lock(_mutex);
    return _playing;
}

void PlayerStream::shutDown() {
    std::deque<Pass> dropped; // outlives the lock: what its completions keep may come back to us
    {
        const std::scoped_lock lock(_mutex);
        _ended = true;
        _playing = false;
        updateGate();
        dropped.swap(_passes);
        wakeDecoder();
        _scheduleChanged.notify_all();
    }
    if (_decoder.joinable()) _decoder.join();
    if (completing != this) _completions.sync([] {});
}

void PlayerStream::setOutput(double linkRate, double rate, bool offline) {
    const std::scoped_lock lock(_mutex);
    _shared.offline = offline;
    _linkRate = linkRate;
    _outputRate = rate;
    if (!_shared.path || _shared.path->rates() == wantedRates()) return;
    _shared.gate.close();
    makePath();
    updateGate();
}

// Call `completion` on the completions' thread. _mutex is held.
void PlayerStream::complete(std::function<void()> completion) {
    ++_completionsUnderWay;
    _completions.async([self = shared_from_this(), completion = std::move(completion)]() mutable {
        const Completing mark(self.get());
        const bool dropped = [&] {
            const std::scoped_lock lock(self->_mutex);
            return self->_ended;
        }();
        if (!dropped && completion) completion();
        completion = nullptr; // what it kept goes while the call is still under way
        const std::scoped_lock lock(self->_mutex);
        --self->_completionsUnderWay;
        self->_lastCompletion = Clock::now();
        self->_mayBeScheduled = true;
        self->_scheduleChanged.notify_all();
    });
}

// --- decoding ahead

void PlayerStream::runDecoder() {
    while (true) {
        bool primes = false;
        {
            const std::scoped_lock lock(_mutex);
            if (_ended) return;
            if (decodeSome()) continue;
            primes = !_primed && _ringFormat.channelCount > 0;
            _shared.decoderSleeps = true;
        }
        if (!primes) {
            _shared.wake.wait();
        } else if (!_shared.wake.waitFor(PrimingLimit)) {
            const std::scoped_lock lock(_mutex);
            if (_ringFormat.channelCount > 0) prime();
        }
    }
}

// Do one step; false if there is nothing to do now. _mutex is held.
bool PlayerStream::decodeSome() {
    if (_passes.empty()) return false;
    Pass& pass = _passes.front();
    if (_ringFormat.channelCount == 0) configureRing(pass.file->processingFormat());
    if (!_writer.isUnderWay()) _writer.begin(pass.file, pass.silentFrames, _ringFormat);
    const PassWriter::Step step = _writer.write(_shared.ring);
    if (step == PassWriter::Step::Finished) {
        complete(std::move(pass.completion));
        _passes.pop_front();
        _shared.passUnderWay = !_passes.empty();
    }
    if (!_primed && _shared.ring.readable() >= _shared.ring.capacity() / 2) prime();
    return step != PassWriter::Step::Full;
}

// The ring has enough to begin with. _mutex is held.
void PlayerStream::prime() {
    _primed = true;
    updateGate();
}

// The gate is closed, as it always is while the ring is not configured. _mutex is held.
void PlayerStream::configureRing(const AVAudioFormat& format) {
    _ringFormat = format;
    const auto capacity = static_cast<std::uint32_t>(format.sampleRate * RingSeconds);
    if (format.channelCount != _shared.ring.channels() || capacity != _shared.ring.capacity()) {
        _shared.ring.configure(format.channelCount, std::max(capacity, 1U));
        _shared.scratchPlanes = planesOf(_shared.scratch, format.channelCount, MaximumFrames);
        _shared.linkPlanes = planesOf(_shared.linkScratch, format.channelCount, MaximumFrames);
    }
    makePath();
}

// The gate is closed. _mutex is held.
void PlayerStream::makePath() {
    _shared.path = std::make_unique<RatePath>(wantedRates(), _ringFormat.channelCount);
}

// _mutex is held.
RatePath::Rates PlayerStream::wantedRates() const {
    const double ringRate = _ringFormat.sampleRate;
    return _outputRate > 0 ? RatePath::ratesOf(ringRate, _linkRate, _outputRate)
                           : RatePath::ratesOf(ringRate, ringRate, ringRate);
}

// _mutex is held.
void PlayerStream::updateGate() {
    if (_playing && _primed) {
        _shared.gate.open();
    } else {
        _shared.gate.close();
    }
}

void PlayerStream::wakeDecoder() noexcept {
    if (_shared.decoderSleeps.exchange(false)) _shared.wake.signal();
}

// --- offline

// The frames of the ring from which `outputFrames` frames of output can be made. _mutex is held.
std::uint32_t PlayerStream::ringFramesFor(std::uint32_t outputFrames) const {
    return std::min(_shared.path->inputFor(outputFrames), _shared.ring.capacity());
}

bool PlayerStream::isProvided(std::uint32_t frames) {
    const std::scoped_lock lock(_mutex);
    if (!_playing || _ended) return true;
    return _primed && _ringFormat.channelCount > 0 && _shared.ring.readable() >= ringFramesFor(frames);
}

void PlayerStream::provide(std::uint32_t frames, const std::stop_token& stop) {
    const std::stop_callback wakeUp(stop, [this] {
        const std::scoped_lock lock(_mutex);
        _scheduleChanged.notify_all();
    });
    std::unique_lock lock(_mutex);
    std::optional<Clock::time_point> limit;
    while (_playing && !_ended && !stop.stop_requested()) {
        if (_ringFormat.channelCount > 0 && _shared.ring.readable() >= ringFramesFor(frames)) break;
        if (decodeSome()) continue;
        if (!limit) limit = Clock::now() + CompletionLimit;
        if (Clock::now() >= *limit) break;
        if (_completionsUnderWay == 0) {
            if (Clock::now() - _lastCompletion > ScheduleLimit) _mayBeScheduled = false;
            if (!_mayBeScheduled) break;
        }
        _scheduleChanged.wait_for(lock, ScheduleLimit);
    }
    if (!_primed && _ringFormat.channelCount > 0) prime();
}

// --- the audio thread

void PlayerStream::readDirectly(float* const* planes, std::uint32_t frames) noexcept {
    const std::uint32_t count = _shared.ring.read(planes, 0, frames);
    if (count == frames) return;
    fillWithSilence(planes, _shared.ring.channels(), count, frames - count);
    if (_shared.passUnderWay.load(std::memory_order_relaxed)) {
        _shared.underruns.fetch_add(1, std::memory_order_relaxed);
    }
}

void PlayerStream::readRing(float* const* planes, std::uint32_t frames) noexcept {
    _shared.path->process(planes, frames,
                          [this](float* const* input, std::uint32_t count) { readDirectly(input, count); });
}

void PlayerStream::render(float* const* planes, std::uint32_t channels, std::uint32_t linkChannels,
                          std::uint32_t frames) noexcept {
    if (!_shared.gate.enter()) {
        fillWithSilence(planes, channels, 0, frames);
        return;
    }
    const std::uint32_t ringChannels = _shared.ring.channels();
    const bool narrows = linkChannels > 0 && linkChannels < ringChannels;
    if (ringChannels == channels && !narrows) {
        readRing(planes, frames);
    } else {
        float* const* scratch = _shared.scratchPlanes.data();
        readRing(scratch, frames);
        if (narrows) {
            mapChannels(scratch, ringChannels, _shared.linkPlanes.data(), linkChannels, frames);
            mapChannels(_shared.linkPlanes.data(), linkChannels, planes, channels, frames);
        } else {
            mapChannels(scratch, ringChannels, planes, channels, frames);
        }
    }
    const bool low = _shared.ring.readable() <= _shared.ring.capacity() / 2;
    _shared.gate.leave();
    if (low && !_shared.offline.load(std::memory_order_relaxed)) {
        wakeDecoder();
    }
}

} // namespace platform

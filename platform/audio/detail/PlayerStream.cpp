// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/PlayerStream.hpp"

#include "platform/audio/AVAudioFile.hpp"

#include <algorithm>
#include <optional>
#include <thread>
#include <utility>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double RingSeconds = 0.2;
// How long playback waits for another file to be scheduled before it starts with less than half a ring of
// frames.
constexpr std::chrono::milliseconds PrimingLimit{20};
// How long an offline render waits for another file to be scheduled after a completion handler has returned.
constexpr std::chrono::seconds ScheduleLimit{2};
// How long an offline render waits for a completion handler that does not return.
constexpr std::chrono::seconds CompletionLimit{10};

thread_local const PlayerStream* completing = nullptr; // the stream whose completion this thread is running

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

// Locks `mutex`, or gives up after `limit`. Polls, because ThreadSanitizer does not intercept the call that
// std::timed_mutex uses.
std::unique_lock<std::mutex> lockWithin(std::mutex& mutex, std::chrono::nanoseconds limit) {
    std::unique_lock lock(mutex, std::try_to_lock);
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!lock && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::microseconds(50));
        (void)lock.try_lock();
    }
    return lock;
}

} // namespace

PlayerStream::PlayerStream() = default;
PlayerStream::~PlayerStream() = default;

void PlayerStream::schedule(std::shared_ptr<AVAudioFile> file, std::int64_t silentFrames,
                            std::function<void()> completion) {
    const std::scoped_lock lock(_mutex);
    if (_ended) return;
    _passes.push_back({std::move(file), silentFrames, std::move(completion)});
    _voice.passUnderWay = true;
    if (!std::exchange(_hasDecoder, true)) {
        std::thread([self = shared_from_this()] { self->runDecoder(); }).detach();
    }
    // In offline rendering the rendering thread decodes, so the decoder is not woken.
    if (!_voice.offline || !_voice.playing) _voice.wakeDecoder();
    _changed.notify_all();
}

void PlayerStream::play() {
    _voice.playing = true;
}

void PlayerStream::pause() {
    const std::scoped_lock lock(_mutex); // so that `provide` does not miss the notification
    _voice.playing = false;
    _changed.notify_all();
}

void PlayerStream::stop() {
    {
        const std::scoped_lock lock(_mutex);
        _voice.playing = false;
        _voice.passUnderWay = false;
        _voice.gate.shut();
        _isResetDue = true;
        for (Pass& pass : _passes) complete(std::move(pass.completion));
        _passes.clear();
        _changed.notify_all();
    }
    // If the decoder is still busy after the limit, it resets the stream itself later.
    if (const std::unique_lock turn = lockWithin(_turn, ControlLimit); turn) (void)settle();
    if (completing != this) _completions.sync([] {});
}

void PlayerStream::shutDown() {
    std::deque<Pass> dropped; // destroyed after unlocking, because the captures of completion handlers may
                              // call this stream
    {
        std::unique_lock lock(_mutex);
        _ended = true;
        _voice.playing = false;
        _voice.gate.shut();
        dropped.swap(_passes);
        _voice.wakeDecoder();
        _changed.notify_all();
        _changed.wait_for(lock, ControlLimit, [this] { return !_hasDecoder; });
    }
    if (completing != this) _completions.sync([] {});
}

void PlayerStream::setOutput(double linkRate, double rate, bool offline) {
    {
        const std::scoped_lock lock(_mutex);
        _voice.offline = offline;
        if (_linkRate == linkRate && _outputRate == rate) return;
        _linkRate = linkRate;
        _outputRate = rate;
        _voice.gate.shut(); // stops reading at the previous rate
        _isPathDue = true;
    }
    if (const std::unique_lock turn(_turn, std::try_to_lock); turn && settle()) return;
    _voice.wakeDecoder();
}

// Submits `completion` to the completion thread. _mutex is held.
void PlayerStream::complete(std::function<void()> completion) {
    ++_completionsUnderWay;
    _completions.async([self = shared_from_this(), completion = std::move(completion)]() mutable {
        const Completing mark(self.get());
        const bool dropped = [&] {
            const std::scoped_lock lock(self->_mutex);
            return self->_ended;
        }();
        if (!dropped && completion) completion();
        completion = nullptr; // releases its captures while the completion still counts as running
        const std::scoped_lock lock(self->_mutex);
        --self->_completionsUnderWay;
        self->_lastCompletion = Clock::now();
        self->_mayBeScheduled = true;
        self->_changed.notify_all();
    });
}

// --- decoding ahead

// No mutex is held.
void PlayerStream::runDecoder() {
    while (true) {
        bool waitsForMore = false; // not primed yet, or changes are pending
        {
            const std::scoped_lock turn(_turn);
            const bool didSome = decodeSome();
            const std::scoped_lock lock(_mutex);
            if (_ended) {
                _hasDecoder = false;
                _changed.notify_all();
                return;
            }
            if (didSome) continue;
            waitsForMore = (!_isPrimed && _ringFormat.channelCount > 0) || _isResetDue || _isPathDue;
            _voice.decoderSleeps = true;
        }
        if (!waitsForMore) {
            _voice.wake.wait();
        } else if (!_voice.wake.waitFor(PrimingLimit)) {
            const std::scoped_lock turn(_turn);
            if (_ringFormat.channelCount > 0) prime();
        }
    }
}

// Performs one decoding step. Returns false if there is nothing to do now. _turn is held.
bool PlayerStream::decodeSome() {
    if (!settle() || (!_writer.isUnderWay() && !beginPass())) return false;
    const PassWriter::Step step = _writer.write(_voice.ring);
    if (step == PassWriter::Step::Finished) finishPass();
    if (!_isPrimed && _voice.ring.readable() >= _voice.ring.capacity() / 2) prime();
    return step != PassWriter::Step::Full;
}

// Begins the first pass of the schedule. Returns false if there is none. _turn is held.
bool PlayerStream::beginPass() {
    std::shared_ptr<AVAudioFile> file;
    std::int64_t silentFrames = 0;
    {
        const std::scoped_lock lock(_mutex);
        if (_passes.empty() || _ended) return false;
        file = _passes.front().file;
        silentFrames = _passes.front().silentFrames;
    }
    if (_ringFormat.channelCount == 0) configureRing(file->processingFormat());
    _writer.begin(file, silentFrames, _ringFormat);
    return true;
}

// _turn is held.
void PlayerStream::finishPass() {
    const std::scoped_lock lock(_mutex);
    if (_isResetDue || _passes.empty()) {
        return; // `stop` was called meanwhile and has called the completion handler
    }
    complete(std::move(_passes.front().completion));
    _passes.pop_front();
    _voice.passUnderWay = !_passes.empty();
}

// Carries out the pending requests of `stop` and `setOutput`. Returns false if the audio thread is still
// inside the gate. _turn is held.
bool PlayerStream::settle() {
    bool isResetDue = false;
    {
        const std::scoped_lock lock(_mutex);
        if (!_isResetDue && !_isPathDue) return true;
        isResetDue = _isResetDue;
    }
    if (!_voice.gate.close()) return false;
    if (isResetDue) {
        _voice.ring.clear();
        _voice.path.reset();
        _ringFormat = {};
        _writer.abandon();
        _isPrimed = false;
        const std::scoped_lock lock(_mutex);
        _isResetDue = false;
    }
    makePath();
    openGate();
    return true;
}

// Lets the audio thread start reading. _turn is held.
void PlayerStream::prime() {
    _isPrimed = true;
    openGate();
}

// _turn is held.
void PlayerStream::openGate() {
    const std::scoped_lock lock(_mutex);
    if (_isPrimed && !_isResetDue && !_isPathDue && !_ended) _voice.gate.open();
}

// Requires a closed gate; the gate is always closed before the ring is configured. _turn is held.
void PlayerStream::configureRing(const AVAudioFormat& format) {
    _ringFormat = format;
    const auto capacity = static_cast<std::uint32_t>(format.sampleRate * RingSeconds);
    if (format.channelCount != _voice.ring.channels() || capacity != _voice.ring.capacity()) {
        _voice.ring.configure(format.channelCount, std::max(capacity, 1U));
        _voice.scratch.resize(format.channelCount, PlayerVoice::MaximumFrames);
        _voice.linkScratch.resize(format.channelCount, PlayerVoice::MaximumFrames);
    }
    makePath();
}

// Creates the path for the current rates. Requires a closed gate. _turn is held.
void PlayerStream::makePath() {
    const double ringRate = _ringFormat.sampleRate;
    RatePath::Rates rates = RatePath::ratesOf(ringRate, ringRate, ringRate);
    {
        const std::scoped_lock lock(_mutex);
        _isPathDue = false;
        if (_outputRate > 0) rates = RatePath::ratesOf(ringRate, _linkRate, _outputRate);
    }
    if (_ringFormat.channelCount == 0 || (_voice.path && _voice.path->rates() == rates)) return;
    _voice.path = std::make_unique<RatePath>(rates, _ringFormat.channelCount);
}

// --- offline

// _mutex is held.
bool PlayerStream::mayStillBeScheduled() {
    if (_completionsUnderWay > 0) return true;
    if (Clock::now() - _lastCompletion > ScheduleLimit) _mayBeScheduled = false;
    return _mayBeScheduled;
}

void PlayerStream::provide(std::uint32_t frames, const std::stop_token& stop) {
    const std::stop_callback wakeUp(stop, [this] {
        const std::scoped_lock lock(_mutex);
        _changed.notify_all();
    });
    std::optional<Clock::time_point> limit;
    while (_voice.playing && !stop.stop_requested()) {
        {
            const std::scoped_lock turn(_turn);
            if (settle() && _ringFormat.channelCount > 0 && _voice.holdsFor(frames)) break;
            if (decodeSome()) continue;
        }
        std::unique_lock lock(_mutex);
        if (!_voice.playing || _ended || stop.stop_requested()) break;
        if (!_passes.empty()) continue; // scheduled just now
        if (!limit) limit = Clock::now() + CompletionLimit;
        if (Clock::now() >= *limit || !mayStillBeScheduled()) break;
        _changed.wait_for(lock, ScheduleLimit);
    }
    const std::scoped_lock turn(_turn);
    if (!_isPrimed && _ringFormat.channelCount > 0) prime();
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/devices/AutomaticDevice.hpp"

#include "platform/foundation/console.hpp"
#include "platform/realtime/Gate.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

constexpr std::string_view NothingAnswers = "No sound server and no sound card answers";

} // namespace

// The lock, and what is to be reported after unlocking.
class AutomaticDevice::TellingLock : public std::unique_lock<std::mutex> {
  public:
    using std::unique_lock<std::mutex>::unique_lock;
    ~TellingLock() { letGo(); }
    TellingLock(const TellingLock&) = delete;
    TellingLock& operator=(const TellingLock&) = delete;

    /// Unlocks and reports.
    void letGo() {
        if (owns_lock()) unlock();
        for (const std::string& message : std::exchange(messages, {})) warn(message);
    }

    std::vector<std::string> messages;
};

// What one device's threads share with the control side. A client that does not return keeps it, and the
// hardware; the next hardware gets a new one.
struct AutomaticDevice::Voice final : HardwareListener {
    explicit Voice(std::shared_ptr<WakeSignal> news)
        : _news(std::move(news)) {}

    Gate gate; // open while the hardware plays for `client`, which is written only behind the closed gate
    std::shared_ptr<OutputClient> client;
    std::atomic<std::uint64_t> calls{0}; // requests for sound from the hardware
    std::atomic<bool> lost{false};
    std::atomic<bool> formatChanged{false};

    void hardwareRender(PlanarSound sound, double sampleRate) noexcept override {
        const RealtimeScope realtime;
        calls.fetch_add(1, std::memory_order_relaxed);
        if (const Gate::Passage inside = gate.enter()) {
            client->render(sound, sampleRate);
        } else {
            fillWithSilence(sound);
        }
    }
    void hardwareFormatDidChange() noexcept override {
        formatChanged = true;
        _news->signal();
    }
    void hardwareWasLost() noexcept override {
        lost = true;
        _news->signal();
    }

  private:
    const std::shared_ptr<WakeSignal> _news;
};

AutomaticDevice::AutomaticDevice(std::vector<HardwareFactory> factories)
    : AutomaticDevice(std::move(factories), Limits{}) {}

AutomaticDevice::AutomaticDevice(std::vector<HardwareFactory> factories, Limits limits)
    : _factories(std::move(factories))
    , _limits(limits) {}

AutomaticDevice::~AutomaticDevice() {
    stop();
    {
        const std::scoped_lock lock(_mutex);
        _ended = true;
        _news->signal();
    }
    if (_supervisor.joinable()) _supervisor.join();
    dropHardware();
}

// --- what the engine and the session call

std::optional<Error> AutomaticDevice::open() {
    TellingLock lock(_mutex);
    return claim(lock);
}

void AutomaticDevice::close() noexcept {
    const std::scoped_lock lock(_mutex);
    unclaim();
}

std::optional<Error> AutomaticDevice::start(std::shared_ptr<OutputClient> client) {
    TellingLock lock(_mutex);
    if (_client) return outputIsInUse();
    if (auto error = claim(lock)) return error;
    _client = std::move(client);
    if (_output.hardware) {
        _output.hardware->run(true);
        playAudibly();
    } else {
        playSilently(lock, NothingAnswers);
    }
    _news->signal();
    return std::nullopt;
}

void AutomaticDevice::stop() noexcept {
    std::shared_ptr<OutputClient> released; // outlives the lock
    const std::scoped_lock lock(_mutex);
    if (!_client) return;
    if (!closeVoice()) dropHardware();
    _silent.reset();
    if (_output.hardware) _output.hardware->run(false);
    released.swap(_client);
    unclaim();
}

AVAudioFormat AutomaticDevice::format() const noexcept {
    const std::scoped_lock lock(_formatMutex);
    return _format;
}

bool AutomaticDevice::isAudible() const {
    const std::scoped_lock lock(_mutex);
    return _client && !_silent;
}

// --- claims; _mutex is held

std::optional<Error> AutomaticDevice::claim(TellingLock& lock) {
    if (!_supervisor.joinable()) _supervisor = std::thread([this] { supervise(); });
    if (++_claims > 1) return std::nullopt;
    _factory.reset();
    _refusal.reset();
    _isOpening = true; // perhaps since a previous claim, whose attempt has not ended
    _nextTry = Clock::now();
    _news->signal();
    _answered.wait_for(lock, _limits.answer, [this, before = _answers] { return _answers != before; });
    if (!_refusal) return std::nullopt;
    unclaim();
    return std::exchange(_refusal, std::nullopt);
}

void AutomaticDevice::unclaim() noexcept {
    if (_claims > 0 && --_claims == 0) dropHardware();
}

void AutomaticDevice::adopt(Output output, std::size_t factory) {
    _output = std::move(output);
    _factory = factory;
    if (!_silent) static_cast<void>(takeFormat()); // what plays keeps its format until it is replaced
}

// Stops the hardware from playing for anybody; returns whether it is stopped.
bool AutomaticDevice::closeVoice() noexcept {
    if (!_output.voice) return true;
    if (!_output.voice->gate.close()) return false;
    _output.voice->client.reset(); // the engine and the silent device have it too
    return true;
}

void AutomaticDevice::dropHardware() noexcept {
    Output dropped = std::exchange(_output, {});
    _nextTry = Clock::now() + _limits.retry;
    if (!dropped.voice || dropped.voice->gate.close(std::chrono::nanoseconds(0))) return;
    // A library that ends a stream waits for its thread.
    std::thread([output = std::move(dropped)]() mutable { output.hardware.reset(); }).detach();
}

// --- switching between them; _mutex is held

bool AutomaticDevice::takeFormat() {
    const AVAudioFormat format = _output.hardware->format();
    _blockFrames = _output.hardware->blockFrames();
    const std::scoped_lock lock(_formatMutex);
    return std::exchange(_format, format) != format;
}

void AutomaticDevice::playSilently(TellingLock& lock, std::string_view reason) {
    if (!closeVoice()) dropHardware();
    if (!_silent) {
        _silent = std::make_unique<SilentDevice>(format(), blockFrames());
        static_cast<void>(_silent->start(_client)); // new, and therefore not in use
    }
    if (_isOpening) return; // it is not known yet whether there is anything to report
    if (!_saidSilent && !_factories.empty()) {
        lock.messages.push_back(std::string(reason) + "; playing silently until that changes.");
    }
    _saidSilent = true;
}

void AutomaticDevice::playAudibly() {
    _silent.reset(); // after which it renders no more
    if (!closeVoice()) return;
    _output.voice->client = _client;
    _callsSeen = _output.voice->calls;
    _lastCall = Clock::now();
    _output.voice->gate.open();
}

// --- the watching thread

AutomaticDevice::Clock::duration AutomaticDevice::patience() const {
    using namespace std::chrono_literals;
    constexpr Clock::duration Unlimited = std::chrono::hours(1);
    if (_claims == 0) return Unlimited;
    if (!_output.hardware) return std::max<Clock::duration>(_nextTry - Clock::now(), 1ms);
    if (!_client) return Unlimited;
    return _silent ? 50ms : std::min<Clock::duration>(_limits.streaming / 4, 500ms);
}

void AutomaticDevice::supervise() {
    while (true) {
        Clock::duration wait{};
        {
            const std::scoped_lock lock(_mutex);
            if (_ended) return;
            wait = patience();
        }
        static_cast<void>(_news->waitFor(wait));
        TellingLock lock(_mutex);
        if (_ended) return;
        if (_output.hardware) lookAtHardware(lock);
        if (!_output.hardware && _claims > 0 && Clock::now() >= _nextTry) openHardware(lock);
    }
}

void AutomaticDevice::lookAtHardware(TellingLock& lock) {
    Voice& voice = *_output.voice;
    if (voice.lost.exchange(false)) {
        (void)closeVoice();
        dropHardware();
        if (_client) playSilently(lock, "The sound output has gone");
        return;
    }
    bool formatChanged = voice.formatChanged.exchange(false) && !_silent && takeFormat();
    if (_client) {
        const std::uint64_t calls = voice.calls;
        if (calls != _callsSeen) {
            _callsSeen = calls;
            _lastCall = Clock::now();
            if (_silent) {
                playAudibly();
                formatChanged = takeFormat() || formatChanged;
                _saidSilent = false;
            }
        } else if (!_silent && Clock::now() - _lastCall > _limits.streaming) {
            playSilently(lock, "The sound server doesn't play");
        } else if (_silent && Clock::now() - _lastCall > _limits.streaming + _limits.reconnect) {
            dropHardware(); // by now perhaps another server answers
            return;
        }
        if (formatChanged) _client->outputFormatDidChange();
    }
}

// Opens without holding the lock, because a server may be slow.
void AutomaticDevice::openHardware(TellingLock& lock) {
    const std::optional<std::size_t> wanted =
        _factory; // a lost device is waited for, not replaced by another
    lock.letGo();
    Output found;
    std::size_t index = 0;
    std::optional<Error> refusal;
    for (std::size_t i = 0; i < _factories.size() && !found.hardware && !refusal; ++i) {
        if (wanted && *wanted != i) continue;
        Output output{.voice = std::make_shared<Voice>(_news), .hardware = _factories[i]()};
        HardwareDevice::Answer answer = output.hardware->open(*output.voice);
        if (answer.kind == HardwareDevice::Answer::Kind::Opened) found = std::move(output);
        if (answer.kind == HardwareDevice::Answer::Kind::Refused) refusal = std::move(answer.error);
        index = i;
    }
    lock.lock();
    ++_answers;
    _isOpening = false;
    _refusal = std::move(refusal);
    _nextTry = Clock::now() + _limits.retry;
    _answered.notify_all();
    if (found.hardware && !_ended && _claims > 0 && !_output.hardware) {
        adopt(std::move(found), index);
        startOpened();
        return;
    }
    if (_client && !_output.hardware) playSilently(lock, NothingAnswers);
    lock.letGo();
    found = {}; // nobody wants it any more
    lock.lock();
}

// The silent device plays until the hardware requests sound.
void AutomaticDevice::startOpened() {
    _callsSeen = _output.voice->calls;
    _lastCall = Clock::now();
    if (_client) _output.hardware->run(true);
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/devices/AutomaticDevice.hpp"

#include "platform/foundation/console.hpp"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

constexpr std::string_view NothingAnswers = "No sound server and no sound card answers";

} // namespace

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
        _shared.news.signal();
    }
    if (_supervisor.joinable()) _supervisor.join();
    dropHardware();
}

// --- what the engine and the session ask for

std::optional<Error> AutomaticDevice::open() {
    std::unique_lock lock(_mutex);
    return claim(lock);
}

void AutomaticDevice::close() noexcept {
    const std::scoped_lock lock(_mutex);
    unclaim();
}

std::optional<Error> AutomaticDevice::start(std::shared_ptr<OutputClient> client) {
    std::unique_lock lock(_mutex);
    if (_client) return outputIsInUse();
    if (auto error = claim(lock)) return error;
    _client = std::move(client);
    if (_hardware) {
        _hardware->run(true);
        playAudibly();
    } else {
        playSilently(NothingAnswers);
    }
    _shared.news.signal();
    return std::nullopt;
}

void AutomaticDevice::stop() noexcept {
    std::shared_ptr<OutputClient> released; // outlives the lock
    const std::scoped_lock lock(_mutex);
    if (!_client) return;
    _shared.gate.close();
    _silent.reset();
    if (_hardware) _hardware->run(false);
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

std::optional<Error> AutomaticDevice::claim(std::unique_lock<std::mutex>& lock) {
    if (!_supervisor.joinable()) _supervisor = std::thread([this] { supervise(); });
    if (++_claims > 1) return std::nullopt;
    _factory.reset();
    _refusal.reset();
    _isOpening = true; // perhaps since a former claim, whose attempt has not ended
    _nextTry = Clock::now();
    _shared.news.signal();
    _answered.wait_for(lock, _limits.answer, [this, before = _answers] { return _answers != before; });
    if (!_refusal) return std::nullopt;
    unclaim();
    return std::exchange(_refusal, std::nullopt);
}

void AutomaticDevice::unclaim() noexcept {
    if (_claims > 0 && --_claims == 0) dropHardware();
}

void AutomaticDevice::adopt(std::unique_ptr<HardwareDevice> hardware, std::size_t factory) {
    _hardware = std::move(hardware);
    _factory = factory;
    if (!_silent) static_cast<void>(takeFormat()); // what plays keeps its format until it is relieved
}

void AutomaticDevice::dropHardware() noexcept {
    _shared.gate.close();
    _hardware.reset();
    _shared.lost = false;
    _nextTry = Clock::now() + _limits.retry;
}

// --- changing between them; _mutex is held

bool AutomaticDevice::takeFormat() {
    const AVAudioFormat format = _hardware->format();
    _blockFrames = _hardware->blockFrames();
    const std::scoped_lock lock(_formatMutex);
    return std::exchange(_format, format) != format;
}

void AutomaticDevice::playSilently(std::string_view reason) {
    _shared.gate.close();
    if (!_silent) {
        _silent = std::make_unique<SilentDevice>(format(), blockFrames());
        static_cast<void>(_silent->start(_client)); // new, and so not in use
    }
    if (_isOpening) return; // it is not known yet whether there is anything to say
    if (!_saidSilent && !_factories.empty()) {
        warn(std::string(reason) + "; playing silently until that changes.");
    }
    _saidSilent = true;
}

void AutomaticDevice::playAudibly() {
    _silent.reset(); // after which it renders no more
    _shared.gate.close();
    _shared.client = _client.get();
    _callsSeen = _shared.calls;
    _lastCall = Clock::now();
    _shared.gate.open();
}

// --- the watching thread

AutomaticDevice::Clock::duration AutomaticDevice::patience() const {
    using namespace std::chrono_literals;
    constexpr Clock::duration Unlimited = std::chrono::hours(1);
    if (_claims == 0) return Unlimited;
    if (!_hardware) return std::max<Clock::duration>(_nextTry - Clock::now(), 1ms);
    if (!_client) return Unlimited;
    return _silent ? 50ms : std::min<Clock::duration>(_limits.streaming / 4, 500ms);
}

void AutomaticDevice::supervise() {
    std::unique_lock lock(_mutex);
    while (!_ended) {
        const Clock::duration wait = patience();
        lock.unlock();
        static_cast<void>(_shared.news.waitFor(wait));
        lock.lock();
        if (_ended) return;
        if (_hardware) lookAtHardware();
        if (!_hardware && _claims > 0 && Clock::now() >= _nextTry) openHardware(lock);
    }
}

void AutomaticDevice::lookAtHardware() {
    if (_shared.lost.exchange(false)) {
        dropHardware();
        if (_client) playSilently("The sound output has gone");
        return;
    }
    bool formatChanged = _shared.formatChanged.exchange(false) && !_silent && takeFormat();
    if (_client) {
        const std::uint64_t calls = _shared.calls;
        if (calls != _callsSeen) {
            _callsSeen = calls;
            _lastCall = Clock::now();
            if (_silent) {
                playAudibly();
                formatChanged = takeFormat() || formatChanged;
                _saidSilent = false;
            }
        } else if (!_silent && Clock::now() - _lastCall > _limits.streaming) {
            playSilently("The sound server doesn't play");
        } else if (_silent && Clock::now() - _lastCall > _limits.streaming + _limits.reconnect) {
            dropHardware(); // perhaps what answers by now is another server
            return;
        }
        if (formatChanged) _client->outputFormatDidChange();
    }
}

// Opens without holding the lock, for a server may take its time.
void AutomaticDevice::openHardware(std::unique_lock<std::mutex>& lock) {
    const std::optional<std::size_t> wanted =
        _factory; // a lost device is waited for, not exchanged for another
    lock.unlock();
    std::unique_ptr<HardwareDevice> found;
    std::size_t index = 0;
    std::optional<Error> refusal;
    for (std::size_t i = 0; i < _factories.size() && !found && !refusal; ++i) {
        if (wanted && *wanted != i) continue;
        auto hardware = _factories[i]();
        HardwareDevice::Answer answer = hardware->open(*this);
        if (answer.kind == HardwareDevice::Answer::Kind::Opened) found = std::move(hardware);
        if (answer.kind == HardwareDevice::Answer::Kind::Refused) refusal = std::move(answer.error);
        index = i;
    }
    lock.lock();
    ++_answers;
    _isOpening = false;
    _refusal = std::move(refusal);
    _nextTry = Clock::now() + _limits.retry;
    _answered.notify_all();
    if (found && !_ended && _claims > 0 && !_hardware) {
        adopt(std::move(found), index);
        startOpened();
        return;
    }
    if (_client && !_hardware) playSilently(NothingAnswers);
    lock.unlock();
    found.reset(); // nobody wants it any more
    lock.lock();
}

// The silent device plays on until the hardware asks for sound.
void AutomaticDevice::startOpened() {
    _callsSeen = _shared.calls;
    _lastCall = Clock::now();
    if (_client) _hardware->run(true);
}

// --- what the hardware tells

void AutomaticDevice::hardwareRender(float* const* planes, const AVAudioFormat& format,
                                     std::uint32_t frames) noexcept {
    _shared.calls.fetch_add(1, std::memory_order_relaxed);
    if (_shared.gate.enter()) {
        _shared.client->render(planes, format, frames);
        _shared.gate.leave();
    } else {
        for (std::uint32_t c = 0; c < format.channelCount; ++c) std::fill_n(planes[c], frames, 0.0F);
    }
}

void AutomaticDevice::hardwareFormatDidChange() noexcept {
    _shared.formatChanged = true;
    _shared.news.signal();
}

void AutomaticDevice::hardwareWasLost() noexcept {
    _shared.lost = true;
    _shared.news.signal();
}

} // namespace platform

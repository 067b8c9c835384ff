// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The supervisor thread of AutomaticDevice: opens the hardware and watches whether it plays.
#include "platform/audio/devices/AutomaticDeviceParts.hpp"

#include <algorithm>

namespace platform {

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
            dropHardware(); // another server may answer by now
            return;
        }
        if (formatChanged) _client->outputFormatDidChange();
    }
}

// Opens the hardware with the mutex unlocked, because a server may be slow.
void AutomaticDevice::openHardware(TellingLock& lock) {
    const std::optional<std::size_t> wanted =
        _factory; // a lost device is only replaced by one of the same kind
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
    found.hardware.reset(); // closes hardware that is no longer claimed; its listener outlives it
    lock.lock();
}

// Starts the hardware. The silent device plays until the hardware requests sound.
void AutomaticDevice::startOpened() {
    _callsSeen = _output.voice->calls;
    _lastCall = Clock::now();
    if (_client) _output.hardware->run(true);
}

} // namespace platform

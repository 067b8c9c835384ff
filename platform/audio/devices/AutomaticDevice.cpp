// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/devices/AutomaticDevice.hpp"

#include "platform/audio/devices/AutomaticDeviceParts.hpp"

#include <utility>

namespace platform {

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

// --- operations called by the engine and the session

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
    std::shared_ptr<OutputClient> released; // destroyed after unlocking
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
    _isOpening = true; // may be true already: the attempt of a previous claim may not have ended
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
    if (!_silent) {
        static_cast<void>(takeFormat()); // the silent device keeps its format until the hardware plays
    }
}

// Disconnects the client from the hardware. Returns false if a render call has not returned in time.
bool AutomaticDevice::closeVoice() noexcept {
    if (!_output.voice) return true;
    if (!_output.voice->gate.close()) return false;
    _output.voice->client.reset(); // not the last reference: _client holds one too
    return true;
}

void AutomaticDevice::dropHardware() noexcept {
    Output dropped = std::exchange(_output, {});
    _nextTry = Clock::now() + _limits.retry;
    if (!dropped.voice || dropped.voice->gate.close(std::chrono::nanoseconds(0))) return;
    // Destroying the hardware would wait for its audio thread, which has not returned.
    std::thread([output = std::move(dropped)]() mutable { output.hardware.reset(); }).detach();
}

// --- switching between hardware and silence; _mutex is held

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
        static_cast<void>(_silent->start(_client)); // a new device is not in use, so this cannot fail
    }
    if (_isOpening) return; // the hardware may still answer
    if (!_saidSilent && !_factories.empty()) {
        lock.messages.push_back(std::string(reason) + "; playing silently until that changes.");
    }
    _saidSilent = true;
}

void AutomaticDevice::playAudibly() {
    _silent.reset(); // stopped first, because only one thread may render the client
    if (!closeVoice()) return;
    _output.voice->client = _client;
    _callsSeen = _output.voice->calls;
    _lastCall = Clock::now();
    _output.voice->gate.open();
}

} // namespace platform

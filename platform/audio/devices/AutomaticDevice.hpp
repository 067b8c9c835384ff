// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The process's output. Plays through the first hardware device that answers, and through the silent device
// while no hardware answers or the hardware in use is lost or does not play. A supervisor thread opens the
// hardware, watches it and switches between the two, so that no caller waits long for a server that does not
// answer.
#pragma once

#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/SilentDevice.hpp"
#include "platform/audio/devices/HardwareDevice.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

namespace platform {

class AutomaticDevice final : public OutputDevice {
  public:
    struct Limits {
        std::chrono::milliseconds answer{40}; // a claim waits this long for the hardware
        // Hardware that has not requested sound for this long counts as not playing.
        std::chrono::milliseconds streaming{2000};
        std::chrono::milliseconds retry{1000}; // between attempts to open the hardware
        // Hardware that counts as not playing is opened again after this time.
        std::chrono::milliseconds reconnect{5000};
    };

    /// `factories` are tried in order. Without factories the device is always silent and reports nothing.
    explicit AutomaticDevice(std::vector<HardwareFactory> factories);
    AutomaticDevice(std::vector<HardwareFactory> factories, Limits limits);
    ~AutomaticDevice() override;

    [[nodiscard]] std::optional<Error> open() override;
    void close() noexcept override;
    [[nodiscard]] std::optional<Error> start(std::shared_ptr<OutputClient> client) override;
    void stop() noexcept override;
    [[nodiscard]] AVAudioFormat format() const noexcept override;
    [[nodiscard]] std::uint32_t blockFrames() const noexcept override { return _blockFrames; }

    /// Returns whether a client is playing through the hardware.
    [[nodiscard]] bool isAudible() const;

  private:
    using Clock = std::chrono::steady_clock;

    class TellingLock;
    struct Voice;
    // The hardware and its listener. The hardware is destroyed first, because its end may call the listener;
    // so an output that has hardware is not assigned to.
    struct Output {
        std::shared_ptr<Voice> voice;
        std::unique_ptr<HardwareDevice> hardware; // null while no hardware is open
    };

    [[nodiscard]] std::optional<Error> claim(TellingLock& lock);
    void unclaim() noexcept;
    void adopt(Output output, std::size_t factory);
    [[nodiscard]] bool closeVoice() noexcept;
    void dropHardware() noexcept;
    void playSilently(TellingLock& lock, std::string_view reason);
    void playAudibly();
    [[nodiscard]] bool takeFormat();
    void supervise();
    void lookAtHardware(TellingLock& lock);
    void openHardware(TellingLock& lock);
    void startOpened();
    [[nodiscard]] Clock::duration patience() const;

    const std::shared_ptr<WakeSignal> _news = std::make_shared<WakeSignal>(); // wakes the supervisor

    const std::vector<HardwareFactory> _factories;
    const Limits _limits;

    mutable std::mutex _formatMutex; // guards _format
    AVAudioFormat _format = DefaultOutputFormat;
    std::atomic<std::uint32_t> _blockFrames{DefaultBlockFrames}; // of the hardware opened last

    mutable std::mutex _mutex; // guards the members below
    Output _output;
    std::optional<std::size_t> _factory;   // index of the factory that made the last hardware
    std::unique_ptr<SilentDevice> _silent; // not null while it plays instead of the hardware
    std::shared_ptr<OutputClient> _client; // not null from `start` to `stop`
    int _claims = 0;
    std::uint64_t _callsSeen = 0;
    Clock::time_point _lastCall;
    Clock::time_point _nextTry;
    bool _isOpening = false;           // the supervisor is opening the hardware, or will soon
    std::uint64_t _answers = 0;        // number of finished attempts to open the hardware
    std::optional<Error> _refusal;     // the error of the last attempt, if the server refused
    std::condition_variable _answered; // notified at the end of every attempt
    bool _saidSilent = false;          // silence was reported since the hardware last played
    bool _ended = false;
    std::thread _supervisor; // runs from the first claim on
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The process's output: the first hardware device that answers; the silent device as long as none does, or
// while the one in use is lost or does not play. A separate thread opens the hardware, watches it and
// switches between them: a server that does not answer makes nobody wait.
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
        std::chrono::milliseconds answer{40}; // that a claim waits before it continues without the hardware
        std::chrono::milliseconds streaming{
            2000};                             // without a request for sound the device counts as not playing
        std::chrono::milliseconds retry{1000}; // between attempts to get a lost device back
        std::chrono::milliseconds reconnect{5000}; // after which one that does not play is opened again
    };

    /// `factories`: in the order in which they are tried; none: silence for ever, without a report.
    explicit AutomaticDevice(std::vector<HardwareFactory> factories);
    AutomaticDevice(std::vector<HardwareFactory> factories, Limits limits);
    ~AutomaticDevice() override;

    [[nodiscard]] std::optional<Error> open() override;
    void close() noexcept override;
    [[nodiscard]] std::optional<Error> start(std::shared_ptr<OutputClient> client) override;
    void stop() noexcept override;
    [[nodiscard]] AVAudioFormat format() const noexcept override;
    [[nodiscard]] std::uint32_t blockFrames() const noexcept override { return _blockFrames; }

    /// Returns whether what is playing now is heard.
    [[nodiscard]] bool isAudible() const;

  private:
    using Clock = std::chrono::steady_clock;

    class TellingLock;
    struct Voice;
    // The hardware, destroyed first, and what it plays for.
    struct Output {
        std::shared_ptr<Voice> voice;
        std::unique_ptr<HardwareDevice> hardware; // null: none answers
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

    const std::shared_ptr<WakeSignal> _news = std::make_shared<WakeSignal>(); // for the watching thread

    const std::vector<HardwareFactory> _factories;
    const Limits _limits;

    mutable std::mutex _formatMutex; // guards _format
    AVAudioFormat _format = DefaultOutputFormat;
    std::atomic<std::uint32_t> _blockFrames{DefaultBlockFrames}; // of the hardware that answered last

    mutable std::mutex _mutex; // guards the fields below
    Output _output;
    std::optional<std::size_t> _factory;   // that made the last one
    std::unique_ptr<SilentDevice> _silent; // while it plays in place of the hardware
    std::shared_ptr<OutputClient> _client; // while running
    int _claims = 0;
    std::uint64_t _callsSeen = 0;
    Clock::time_point _lastCall;
    Clock::time_point _nextTry;
    bool _isOpening = false;           // the watching thread is to open the hardware, or is doing so
    std::uint64_t _answers = 0;        // attempts to open it that have ended
    std::optional<Error> _refusal;     // of the last attempt
    std::condition_variable _answered; // notified at the end of every attempt
    bool _saidSilent = false;          // since something was last heard
    bool _ended = false;
    std::thread _supervisor; // from the first claim on
};

} // namespace platform

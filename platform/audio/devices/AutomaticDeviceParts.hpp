// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What both sources of AutomaticDevice use: the operations of its callers, and its supervisor thread.
#pragma once

#include "platform/audio/devices/AutomaticDevice.hpp"
#include "platform/foundation/console.hpp"
#include "platform/realtime/Gate.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <string>
#include <utility>

namespace platform {

inline constexpr std::string_view NothingAnswers = "No sound server and no sound card answers";

// A lock that collects messages and reports them after unlocking.
class AutomaticDevice::TellingLock : public std::unique_lock<std::mutex> {
  public:
    using std::unique_lock<std::mutex>::unique_lock;
    ~TellingLock() { letGo(); }
    TellingLock(const TellingLock&) = delete;
    TellingLock& operator=(const TellingLock&) = delete;

    /// Unlocks and reports the messages.
    void letGo() {
        if (owns_lock()) unlock();
        for (const std::string& message : std::exchange(messages, {})) warn(message);
    }

    std::vector<std::string> messages;
};

// The state that the threads of one hardware device share with the control side. If a render call does not
// return, the hardware is abandoned together with its Voice; the next hardware device gets a new one.
struct AutomaticDevice::Voice final : HardwareListener {
    explicit Voice(std::shared_ptr<WakeSignal> news)
        : _news(std::move(news)) {}

    Gate gate; // open while the hardware plays `client`, which is changed only while the gate is closed
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

} // namespace platform

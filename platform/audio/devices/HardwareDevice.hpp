// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An output that is really heard and may be absent, or disappear: AutomaticDevice chooses among these.
#pragma once

#include "platform/audio/OutputDevice.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

/// What a hardware device reports. All operations except `render` are called on a thread that is not the
/// audio thread; they must return at once.
class HardwareListener {
  public:
    HardwareListener() = default;
    virtual ~HardwareListener() = default;
    HardwareListener(const HardwareListener&) = delete;
    HardwareListener& operator=(const HardwareListener&) = delete;

    /// Fills `sound`. Audio thread.
    virtual void hardwareRender(PlanarSound sound, double sampleRate) noexcept = 0;
    virtual void hardwareFormatDidChange() noexcept = 0;
    /// The device will not play any more: its server has gone, or refuses it.
    virtual void hardwareWasLost() noexcept = 0;
};

/// Operations come one at a time.
class HardwareDevice {
  public:
    HardwareDevice() = default;
    virtual ~HardwareDevice() = default; // closes
    HardwareDevice(const HardwareDevice&) = delete;
    HardwareDevice& operator=(const HardwareDevice&) = delete;

    struct Answer {
        enum class Kind { Opened, Absent, Refused } kind;
        std::optional<Error> error = std::nullopt; // of a refusal
    };
    /// Connects, without sound. Waits for the answer, for a bounded time; never prints. `listener` outlives
    /// this.
    [[nodiscard]] virtual Answer open(HardwareListener& listener) = 0;
    /// Starts, or stops, requesting sound from the listener.
    virtual void run(bool running) noexcept = 0;
    /// Returns the format; at any time, on any thread.
    [[nodiscard]] virtual AVAudioFormat format() const noexcept = 0;
    /// Returns the number of frames that it will request at a time, as far as it is known; at any time, on
    /// any thread.
    [[nodiscard]] virtual std::uint32_t blockFrames() const noexcept { return DefaultBlockFrames; }
};

using HardwareFactory = std::function<std::unique_ptr<HardwareDevice>()>;

} // namespace platform

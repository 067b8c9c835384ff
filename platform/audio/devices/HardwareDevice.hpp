// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An audible output, which may be unavailable or be lost. AutomaticDevice chooses among the hardware devices.
#pragma once

#include "platform/audio/OutputDevice.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

/// Receives the requests and events of a hardware device. All operations except `hardwareRender` are called
/// on threads other than the audio thread and must return at once.
class HardwareListener {
  public:
    HardwareListener() = default;
    virtual ~HardwareListener() = default;
    HardwareListener(const HardwareListener&) = delete;
    HardwareListener& operator=(const HardwareListener&) = delete;

    /// Fills `sound`. Audio thread.
    virtual void hardwareRender(PlanarSound sound, double sampleRate) noexcept = 0;
    virtual void hardwareFormatDidChange() noexcept = 0;
    /// Called when the device cannot play any more, because its server has quit or refuses the stream.
    virtual void hardwareWasLost() noexcept = 0;
};

/// The operations are called one at a time, except where stated otherwise.
class HardwareDevice {
  public:
    HardwareDevice() = default;
    virtual ~HardwareDevice() = default; // closes the device
    HardwareDevice(const HardwareDevice&) = delete;
    HardwareDevice& operator=(const HardwareDevice&) = delete;

    struct Answer {
        enum class Kind { Opened, Absent, Refused } kind;
        std::optional<Error> error = std::nullopt; // set when kind is Refused
    };
    /// Connects to the server or card without requesting sound. Waits for the answer for a limited time;
    /// prints nothing. `listener` must outlive this object.
    [[nodiscard]] virtual Answer open(HardwareListener& listener) = 0;
    /// Starts or stops requesting sound from the listener.
    virtual void run(bool running) noexcept = 0;
    /// Returns the format. Any thread, at any time.
    [[nodiscard]] virtual AVAudioFormat format() const noexcept = 0;
    /// Returns the number of frames that the device requests at a time, or a default while that number is not
    /// known. Any thread, at any time.
    [[nodiscard]] virtual std::uint32_t blockFrames() const noexcept { return DefaultBlockFrames; }
};

using HardwareFactory = std::function<std::unique_ptr<HardwareDevice>()>;

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface between the engine and the destination of its sound: a sound server, a sound card, nothing
// (silent), a buffer (offline). One client at a time.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace platform {

/// Renders what a device plays.
class OutputClient {
  public:
    OutputClient() = default;
    virtual ~OutputClient() = default;
    OutputClient(const OutputClient&) = delete;
    OutputClient& operator=(const OutputClient&) = delete;

    /// Fills `sound` (1 frame or more, one plane for each channel of the output). Audio thread.
    virtual void render(PlanarSound sound, double sampleRate) noexcept = 0;
    /// Called when the device's format has changed. Any thread except the audio thread; returns at once.
    virtual void outputFormatDidChange() = 0;
};

/// The format used as long as a device's is not known.
inline constexpr AVAudioFormat DefaultOutputFormat{.sampleRate = 48000, .channelCount = 2};

/// Likewise the number of frames that it requests at a time.
inline constexpr std::uint32_t DefaultBlockFrames = 256;

/// Control side: any thread except the audio thread, one operation at a time.
class OutputDevice {
  public:
    OutputDevice() = default;
    virtual ~OutputDevice() = default;
    OutputDevice(const OutputDevice&) = delete;
    OutputDevice& operator=(const OutputDevice&) = delete;

    /// Claims the output without running it; claims are counted. Only a server that answers and refuses is an
    /// error. Waits for the server's answer, never for sound.
    [[nodiscard]] virtual std::optional<Error> open() = 0;
    /// Gives one claim back; the last one releases the output.
    virtual void close() noexcept = 0;
    /// Requests sound from `client` from now on. The device claims the output for as long as it runs.
    [[nodiscard]] virtual std::optional<Error> start(std::shared_ptr<OutputClient> client) = 0;
    /// When this returns, no render call is running and none will follow. A call that does not return within
    /// ControlLimit is abandoned: the client is kept alive until it does, and the device continues without
    /// that thread.
    virtual void stop() noexcept = 0;

    /// Returns the format; any thread, at any time.
    [[nodiscard]] virtual AVAudioFormat format() const noexcept = 0;
    /// Returns the usual number of frames that the device requests at a time, as far as it is known; any
    /// thread, at any time.
    [[nodiscard]] virtual std::uint32_t blockFrames() const noexcept { return DefaultBlockFrames; }
    /// Returns whether sound is requested explicitly and may be waited for, so that nothing is ever missing.
    [[nodiscard]] virtual bool isOffline() const noexcept { return false; }
};

/// Returns the error of a device that is started for a second client.
[[nodiscard]] Error outputIsInUse();

/// Returns the output of this process: a sound server if one answers, else a sound card, else silence; it
/// switches between them by itself. product::OutputVariable in the environment, set to pipewire, rtaudio or
/// silent, selects one.
[[nodiscard]] std::shared_ptr<OutputDevice> sharedOutputDevice();
/// The conditions for which an effect is created.
struct RenderSetup {
    double sampleRate = DefaultOutputFormat.sampleRate;
    std::uint32_t blockFrames = DefaultBlockFrames; // of a usual block
};
/// Asks the process's output for its rate and block length; for that it is claimed for a moment, and the
/// server's answer awaited. If none answers, or it refuses, the last known values are returned. Any thread
/// except the audio thread.
[[nodiscard]] RenderSetup askForRenderSetup();

} // namespace platform

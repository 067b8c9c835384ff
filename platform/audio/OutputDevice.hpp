// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface between the engine and its output: a sound server, a sound card, a buffer (offline) or none
// at all (silent). One client at a time.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <cstdint>
#include <memory>
#include <optional>

namespace platform {

/// Renders the sound that a device plays.
class OutputClient {
  public:
    OutputClient() = default;
    virtual ~OutputClient() = default;
    OutputClient(const OutputClient&) = delete;
    OutputClient& operator=(const OutputClient&) = delete;

    /// Fills `sound`, which has at least 1 frame and one plane for each channel of the output. Audio thread.
    virtual void render(PlanarSound sound, double sampleRate) noexcept = 0;
    /// Returns why the sound since the start is not complete. Only offline; the thread that renders.
    [[nodiscard]] virtual std::optional<Error> failure() const { return std::nullopt; }
    /// Called when the device's format has changed. Any thread except the audio thread; returns at once.
    virtual void outputFormatDidChange() = 0;
};

/// The format used while a device's format is not known.
inline constexpr AVAudioFormat DefaultOutputFormat{.sampleRate = 48000, .channelCount = 2};

/// The block length, in frames, used while a device's block length is not known.
inline constexpr std::uint32_t DefaultBlockFrames = 256;

/// Control side: any thread except the audio thread, one operation at a time.
class OutputDevice {
  public:
    OutputDevice() = default;
    virtual ~OutputDevice() = default;
    OutputDevice(const OutputDevice&) = delete;
    OutputDevice& operator=(const OutputDevice&) = delete;

    /// Claims the output without starting it; claims are counted. Returns an error only if a server answers
    /// and refuses. Waits for the server's answer, never for sound.
    [[nodiscard]] virtual std::optional<Error> open() = 0;
    /// Releases one claim. The last one releases the output.
    virtual void close() noexcept = 0;
    /// Requests sound from `client` from now on. The device claims the output for as long as it runs.
    [[nodiscard]] virtual std::optional<Error> start(std::shared_ptr<OutputClient> client) = 0;
    /// Stops requesting sound. When this returns, no render call is running and none will follow. A render
    /// call that does not return within ControlLimit is abandoned: the client is kept alive until the call
    /// returns, and the device no longer uses that thread.
    virtual void stop() noexcept = 0;

    /// Returns the format; any thread, at any time.
    [[nodiscard]] virtual AVAudioFormat format() const noexcept = 0;
    /// Returns the usual number of frames that the device requests at a time, or a default while that number
    /// is not known. Any thread, at any time.
    [[nodiscard]] virtual std::uint32_t blockFrames() const noexcept { return DefaultBlockFrames; }
    /// Returns whether the device renders on request, so that the client may wait until all sound is decoded.
    [[nodiscard]] virtual bool isOffline() const noexcept { return false; }
};

/// Returns the error for starting a device that already has a client.
[[nodiscard]] Error outputIsInUse();

/// Returns the output of this process: a sound server if one answers, otherwise a sound card, otherwise
/// silence. The output switches between these automatically. The environment variable product::OutputVariable
/// selects one of them: pipewire, rtaudio or silent.
[[nodiscard]] std::shared_ptr<OutputDevice> sharedOutputDevice();
/// The sample rate and block length for which an effect is created.
struct RenderSetup {
    double sampleRate = DefaultOutputFormat.sampleRate;
    std::uint32_t blockFrames = DefaultBlockFrames; // the usual block length
};
/// Returns the sample rate and block length of the process's output. Briefly claims the output and waits for
/// the server's answer. If no server answers, or the server refuses, returns the last known values. Any
/// thread except the audio thread.
[[nodiscard]] RenderSetup askForRenderSetup();

} // namespace platform

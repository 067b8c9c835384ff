// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes passes over files into a ring, one after the other, without gaps. Passes in a format other than the
// ring's are converted; the converter keeps its state between consecutive passes in the same format. One
// thread at a time.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/audio/detail/AudioReader.hpp"
#include "platform/audio/detail/RateConverter.hpp"
#include "platform/realtime/FrameRing.hpp"

#include <memory>

namespace platform {

class AVAudioFile;

class PassWriter {
  public:
    enum class Step {
        Wrote,    // made progress; the pass continues
        Full,     // the ring is full
        Finished, // the last frame of the pass is in the ring
    };

    /// Starts a pass over `file` after `silentFrames` frames of silence.
    void begin(const std::shared_ptr<AVAudioFile>& file, std::int64_t silentFrames,
               const AVAudioFormat& ringFormat);
    [[nodiscard]] bool isUnderWay() const noexcept { return _file != nullptr; }
    /// Performs one step of the pass.
    [[nodiscard]] Step write(FrameRing& ring);
    /// Aborts the pass and resets the conversion.
    void abandon();

  private:
    Step writeSilence(FrameRing& ring);
    Step writeDirectly(FrameRing& ring);
    Step writeConverted(FrameRing& ring);
    Step convert();
    Step flush();
    void prepareConversion();
    void convertChunk(ConstPlanarSound chunk);
    Step finish();

    std::shared_ptr<AVAudioFile> _file;
    std::unique_ptr<AudioReader> _reader;
    std::int64_t _silentFrames = 0; // still to be written, in frames of the ring
    AVAudioFormat _ringFormat;
    std::uint32_t _tailFrames = 0; // frames of silence that flush the previous pass out of the converter

    AVAudioFormat _from;                       // input format of the conversion; 0 channels if there is none
    std::unique_ptr<RateConverter> _converter; // null if only the channel count differs
    PlanarBuffer _read;                        // one chunk, as read; converted and mapped below
    PlanarBuffer _converted;
    PlanarBuffer _mapped;
    std::uint32_t _held = 0;  // frames in _mapped
    std::uint32_t _taken = 0; // frames of _mapped that are already in the ring
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes passes over files into a ring, one after the other, joined sample to sample; a pass in another
// format than the ring's is converted, and a conversion that continues with the next pass keeps its state.
// One thread at a time.
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
        Wrote,    // some frames; more to come
        Full,     // the ring is full
        Finished, // the last frame of the pass is in the ring
    };

    /// Starts a pass over `file` after `silentFrames` frames of silence.
    void begin(const std::shared_ptr<AVAudioFile>& file, std::int64_t silentFrames,
               const AVAudioFormat& ringFormat);
    [[nodiscard]] bool isUnderWay() const noexcept { return _file != nullptr; }
    /// Writes some frames of the pass.
    [[nodiscard]] Step write(FrameRing& ring);
    /// Gives up the pass and forgets the state of conversion.
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
    std::int64_t _silentFrames = 0; // still to write, in frames of the ring
    AVAudioFormat _ringFormat;
    std::uint32_t _tailFrames = 0; // of silence that push the end of the last conversion out before this pass

    AVAudioFormat _from; // of the conversion to the ring's format; no channels: there is none
    std::unique_ptr<RateConverter> _converter; // null if only the number of channels differs
    PlanarBuffer _read;                        // one chunk, in these steps
    PlanarBuffer _converted;
    PlanarBuffer _mapped;
    std::uint32_t _held = 0;  // frames in _mapped
    std::uint32_t _taken = 0; // frames of them that are in the ring
};

} // namespace platform

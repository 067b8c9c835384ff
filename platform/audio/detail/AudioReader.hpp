// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes one sound file, in order, to planes of floats (with libavformat and libavcodec). One thread at a
// time; never the audio thread.
//
// If the file states its length (m4a, wav, flac), a pass over the file returns exactly `lengthFrames()`
// frames: the encoder's padding at the end is cut off, and parts that cannot be decoded are replaced by
// silence.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/foundation/Result.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

struct DecodedFile;

class AudioReader {
  public:
    /// Opens the file at `path` and decodes its first frames, or returns the reason why that failed.
    [[nodiscard]] static Result<std::unique_ptr<AudioReader>> open(const std::string& path);
    ~AudioReader();
    AudioReader(const AudioReader&) = delete;
    AudioReader& operator=(const AudioReader&) = delete;

    [[nodiscard]] AVAudioFormat format() const noexcept;
    [[nodiscard]] std::int64_t lengthFrames() const noexcept;

    /// Writes at least one frame and at most `sound.frames()` frames into `sound`, and returns their number.
    /// Returns 0 only at the end of the pass.
    [[nodiscard]] std::uint32_t read(PlanarSound sound);
    /// Returns whether the last frame of the pass has been returned; always false if the file does not state
    /// its length.
    [[nodiscard]] bool isAtEnd() const noexcept;
    /// Seeks to the first frame. Returns false if that fails; the reader cannot be used any more then.
    [[nodiscard]] bool rewind();

  private:
    explicit AudioReader(std::unique_ptr<DecodedFile> file);
    const std::unique_ptr<DecodedFile> _file;
};

} // namespace platform

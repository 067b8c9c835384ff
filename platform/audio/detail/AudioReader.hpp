// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads the frames of one sound file, in order, as planes of floats (libavformat, libavcodec). One thread at
// a time; never the audio thread.
//
// A pass over the file returns exactly `lengthFrames()` frames if the file states its length (m4a, wav,
// flac): the encoder's padding at the end is cut off, and what cannot be decoded is replaced by silence.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/foundation/Result.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

class AudioReader {
  public:
    /// Opens the file at `path` and decodes its first frames.
    [[nodiscard]] static Result<std::unique_ptr<AudioReader>> open(const std::string& path);
    ~AudioReader();
    AudioReader(const AudioReader&) = delete;
    AudioReader& operator=(const AudioReader&) = delete;

    [[nodiscard]] AVAudioFormat format() const noexcept;
    [[nodiscard]] std::int64_t lengthFrames() const noexcept;

    /// Writes as many frames into `sound` as fit and returns their number; 0 only at the end of the pass.
    [[nodiscard]] std::uint32_t read(PlanarSound sound);
    /// Returns whether the last frame of the pass is known to have been returned.
    [[nodiscard]] bool isAtEnd() const noexcept;
    /// Goes back to the first frame; returns whether that worked. If not, the reader cannot be used any more.
    [[nodiscard]] bool rewind();

  private:
    struct Library;
    explicit AudioReader(std::unique_ptr<Library> library);
    const std::unique_ptr<Library> _library;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A sound file opened for reading: m4a, wav and every other format that libavformat can open. The object
// contains the properties from the file's header and, until a player takes it, a reader with the opened file.
// The sound is decoded on the player's thread. Any thread; immutable except for the spare reader, which a
// mutex guards.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/foundation/Result.hpp"
#include "platform/foundation/URL.hpp"

#include <cstdint>
#include <memory>
#include <mutex>

namespace platform {

class AudioReader;

class AVAudioFile {
  public:
    /// Opens the file at `url` for reading (`initForReading:error:`). Reads the header and decodes the first
    /// frames. Returns an error if the file is missing, is not a sound file or contains no frames.
    [[nodiscard]] static Result<std::shared_ptr<AVAudioFile>> open(const URL& url);
    ~AVAudioFile();
    AVAudioFile(const AVAudioFile&) = delete;
    AVAudioFile& operator=(const AVAudioFile&) = delete;

    [[nodiscard]] const URL& url() const noexcept { return _url; }
    /// Returns the file's sample rate and channel count.
    [[nodiscard]] AVAudioFormat processingFormat() const noexcept { return _format; }
    /// Returns the exact length of the file in frames, without the encoder's padding at both ends.
    [[nodiscard]] std::int64_t lengthFrames() const noexcept { return _lengthFrames; }

    /// Returns a reader at the first frame, for use by one thread at a time. Reuses the reader left from
    /// opening the file or from a previous pass; otherwise opens the file again, which is an error if it no
    /// longer exists or has changed.
    [[nodiscard]] Result<std::unique_ptr<AudioReader>> takeReader() const;
    /// Rewinds `reader` and keeps it for a later pass.
    void returnReader(std::unique_ptr<AudioReader> reader) const;

  private:
    AVAudioFile(URL url, std::unique_ptr<AudioReader> reader);

    const URL _url;
    AVAudioFormat _format;
    std::int64_t _lengthFrames = 0;
    mutable std::mutex _mutex; // guards _spare
    mutable std::unique_ptr<AudioReader> _spare;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A sound file opened for reading: m4a, wav and whatever else libavformat opens. The object holds what the
// file's header says and, until a player takes it, the opened file; the sound itself is decoded on the
// player's thread. Any thread; immutable except for the spare reader, which has its own lock.
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
    /// Opens the file at `url` for reading (`initForReading:error:`). Reads only the header. A file that is
    /// missing, is not a sound file, or holds no frames is an error.
    [[nodiscard]] static Result<std::shared_ptr<AVAudioFile>> open(const URL& url);
    ~AVAudioFile();
    AVAudioFile(const AVAudioFile&) = delete;
    AVAudioFile& operator=(const AVAudioFile&) = delete;

    [[nodiscard]] const URL& url() const noexcept { return _url; }
    /// Returns the format in which the file's frames are played: its own rate and channels, as floats.
    [[nodiscard]] AVAudioFormat processingFormat() const noexcept { return _format; }
    /// Returns the exact number of frames of one pass, without the encoder's padding at both ends.
    [[nodiscard]] std::int64_t lengthFrames() const noexcept { return _lengthFrames; }

    /// Returns a reader at the first frame, for one thread at a time: the one left over from opening or from
    /// a previous pass, or a new one (an error if the file no longer exists).
    [[nodiscard]] Result<std::unique_ptr<AudioReader>> takeReader() const;
    /// Returns `reader` for use in a later pass.
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

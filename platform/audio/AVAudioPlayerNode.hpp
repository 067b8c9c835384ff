// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A source node that plays files one after the other, without gaps. Any thread except the audio thread.
//
// A thread of the node decodes ahead into a ring of at most 200 ms. A scheduled file is complete when its
// last frame has been written to the ring. Completion handlers are called on a second thread of the node, one
// at a time, in the order of the schedule.
#pragma once

#include "platform/audio/AVAudioNode.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

class AVAudioFile;
class PlayerStream;

class AVAudioPlayerNode final : public AVAudioNode {
  public:
    using CompletionHandler = std::function<void()>;

    [[nodiscard]] static std::shared_ptr<AVAudioPlayerNode> create();
    /// Drops the schedule without calling the completion handlers. Waits for a completion handler that is
    /// running, unless the destructor itself runs on the completion thread.
    ~AVAudioPlayerNode() override;

    /// Appends the whole of `file` to the schedule, and keeps a strong reference to `file` until it has been
    /// played. `atTime` is the length of the silence before the file, in frames at the file's rate; no value
    /// means no silence. `completionHandler` (may be empty) is called once, never inside this call.
    void scheduleFile(std::shared_ptr<AVAudioFile> file, std::optional<std::int64_t> atTime,
                      CompletionHandler completionHandler);
    /// Starts or continues playing the schedule, including files that are scheduled later. May be called with
    /// an empty schedule and while the engine is stopped.
    void play();
    /// Pauses at the current position. Keeps the schedule and calls no completion handler.
    void pause();
    /// Stops, empties the schedule and discards the decoded frames. Then waits until every pending completion
    /// handler has been called and has returned; a call on the completion thread itself does not wait. Files
    /// that are scheduled afterwards play after the next `play`.
    void stop();
    [[nodiscard]] bool isPlaying() const;

    [[nodiscard]] std::shared_ptr<PlayerStream> playerStream() const override { return _stream; }

  private:
    AVAudioPlayerNode();
    const std::shared_ptr<PlayerStream> _stream;
};

} // namespace platform

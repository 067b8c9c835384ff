// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The source node: plays files one after the other, joined sample to sample. Any thread except the audio
// thread.
//
// A thread of the node decodes ahead into a ring of at most 200 ms. A pass is complete when its last frame
// has been written to that ring; completions are called on a second thread of the node, one at a time, in
// order.
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
    /// Drops what is scheduled without calling its completions; waits for a call in progress, unless it runs
    /// on the thread of that call.
    ~AVAudioPlayerNode() override;

    /// Appends the whole of `file`, from its first frame, to the schedule and keeps it alive until it has
    /// played. `atTime`: the number of frames, at the file's rate, of silence before it; absent: none, as
    /// soon as possible after what is already scheduled. `completionHandler` (may be empty) is called exactly
    /// once, never inside this call.
    void scheduleFile(std::shared_ptr<AVAudioFile> file, std::optional<std::int64_t> atTime,
                      CompletionHandler completionHandler);
    /// Starts or continues playing what is scheduled, now or later. Harmless with nothing scheduled or while
    /// the engine is stopped.
    void play();
    /// Pauses at the present position. The schedule stays and no completion is called.
    void pause();
    /// Stops, empties the schedule and discards what was decoded ahead, then calls every pending completion
    /// and returns when the last of these calls has returned. On the completion thread itself it does not
    /// wait. What is scheduled afterwards plays after the next `play`.
    void stop();
    [[nodiscard]] bool isPlaying() const;

    [[nodiscard]] std::shared_ptr<PlayerStream> playerStream() const override { return _stream; }

  private:
    AVAudioPlayerNode();
    const std::shared_ptr<PlayerStream> _stream;
};

} // namespace platform

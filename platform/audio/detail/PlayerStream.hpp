// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The sound of a player node: a schedule of files, the thread that decodes them ahead into a ring, and the
// reader of that ring on the audio thread. Control operations may be called on any other thread.
//
// The ring holds frames in the format of the file that was scheduled first since the last stop; passes over
// files in another format are converted to it by the decoder, and the state of that conversion also continues
// across the seams. The reader converts the frames from the ring's rate through the link's to the output
// device's.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/audio/detail/PassWriter.hpp"
#include "platform/audio/detail/PlayerVoice.hpp"
#include "platform/dispatch/DispatchQueue.hpp"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

namespace platform {

class AVAudioFile;

class PlayerStream final : public std::enable_shared_from_this<PlayerStream> {
  public:
    PlayerStream();
    ~PlayerStream();
    PlayerStream(const PlayerStream&) = delete;
    PlayerStream& operator=(const PlayerStream&) = delete;

    void schedule(std::shared_ptr<AVAudioFile> file, std::int64_t silentFrames,
                  std::function<void()> completion);
    void play();
    void pause();
    void stop();
    [[nodiscard]] bool isPlaying() const noexcept { return _voice.playing; }
    /// Ends both threads for good; completions that were not called are dropped. A decoder that does not come
    /// back from a file in time continues on its own, with everything that it uses.
    void shutDown();

    /// Produces frames at `rate` from now on, through a link of `linkRate`; `offline`: the renderer calls
    /// `provide` first. The engine's control side.
    void setOutput(double linkRate, double rate, bool offline);
    /// Offline only, on the thread that renders: decodes until `frames` frames of output are available; with
    /// an empty schedule, waits a while for what the last completion may still schedule, until `stop` is
    /// requested.
    void provide(std::uint32_t frames, const std::stop_token& stop);
    /// Returns whether `provide` would have nothing to do. Offline only, on the thread that renders.
    [[nodiscard]] bool isProvided(std::uint32_t frames);

    /// Fills `sound`; see PlayerVoice. Audio thread.
    void render(PlanarSound sound, std::uint32_t linkChannels) noexcept {
        _voice.render(sound, linkChannels);
    }
    /// Returns the number of blocks for which frames were missing while a pass was being played.
    [[nodiscard]] std::uint64_t underruns() const noexcept { return _voice.underruns.load(); }

  private:
    struct Pass {
        std::shared_ptr<AVAudioFile> file;
        std::int64_t silentFrames;
        std::function<void()> completion;
    };

    // Each says which of the locks is held.
    void runDecoder();
    bool decodeSome();
    bool beginPass();
    void finishPass();
    bool settle();
    void configureRing(const AVAudioFormat& format);
    void makePath();
    void prime();
    void openGate();
    void complete(std::function<void()> completion);
    [[nodiscard]] bool holdsFor(std::uint32_t outputFrames) const;
    [[nodiscard]] bool mayStillBeScheduled();

    PlayerVoice _voice;

    // The right to decode. Held for one step, which may open a file and therefore take long: operations that
    // a user waits for take it with a time limit or not at all. Taken before _mutex.
    std::mutex _turn;
    // Guarded by _turn.
    PassWriter _writer;        // of the front pass
    AVAudioFormat _ringFormat; // no channels: not configured
    bool _isPrimed = false;    // the ring holds enough to start

    std::mutex _mutex; // guards the fields below; held only briefly
    std::condition_variable _changed;
    std::deque<Pass> _passes; // front: in progress
    double _outputRate = 0;   // 0: not known yet
    double _linkRate = 0;
    bool _isResetDue = false; // the node was stopped: what the turn guards still belongs to dropped passes
    bool _isPathDue = false;  // the rates have changed
    bool _hasDecoder = false; // its thread runs; started with the first pass
    bool _ended = false;
    int _completionsUnderWay = 0;
    std::chrono::steady_clock::time_point _lastCompletion; // returned at
    bool _mayBeScheduled = false; // a completion was called since `provide` last waited in vain

    DispatchQueue _completions{"AVAudioPlayerNode.completions"};
};

} // namespace platform

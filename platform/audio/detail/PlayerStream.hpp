// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The schedule of a player node, the thread that decodes the files into a ring, and the reader of the ring on
// the audio thread. Unless stated otherwise, the operations may be called on any thread except the audio
// thread.
//
// The ring has the format of the first file scheduled since the last stop. The decoder converts files in
// other formats to the ring's format, without gaps between files in the same format. The reader converts the
// frames from the ring's sample rate to the link's rate and then to the output device's.
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
    /// Ends both threads for good. Completion handlers that have not been called are dropped. If the decoder
    /// does not return from reading a file in time, its thread keeps this object alive until it ends.
    void shutDown();

    /// Sets the output device's sample rate and the link's. If `offline` is true, the renderer calls
    /// `provide` before each block. The engine's control side.
    void setOutput(double linkRate, double rate, bool offline);
    /// Decodes until `frames` frames of output are available. With an empty schedule, waits a while for files
    /// that the last completion handler may schedule. Returns early when `stop` is requested. Offline only,
    /// on the thread that renders.
    void provide(std::uint32_t frames, const std::stop_token& stop);
    /// Returns whether `provide` would have nothing to do. Offline only, on the thread that renders.
    [[nodiscard]] bool isProvided(std::uint32_t frames) noexcept { return _voice.isProvided(frames); }

    /// Fills `sound`; see PlayerVoice. Audio thread.
    void render(PlanarSound sound, std::uint32_t linkChannels) noexcept {
        _voice.render(sound, linkChannels);
    }
    /// Returns how many times frames were missing while a file was being played.
    [[nodiscard]] std::uint64_t underruns() const noexcept { return _voice.underruns.load(); }

  private:
    struct Pass {
        std::shared_ptr<AVAudioFile> file;
        std::int64_t silentFrames;
        std::function<void()> completion;
    };

    // The definitions state which mutexes must be held.
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
    [[nodiscard]] bool mayStillBeScheduled();

    PlayerVoice _voice;

    // Locked by the thread that decodes, for one step at a time. A step may open a file and therefore take
    // long, so operations that a user waits for lock _turn with a time limit or only try to. Locked before
    // _mutex.
    std::mutex _turn;
    // The next three members are guarded by _turn.
    PassWriter _writer;        // writes the first pass of the schedule
    AVAudioFormat _ringFormat; // 0 channels: not configured
    bool _isPrimed = false;    // the ring contains enough frames to start

    std::mutex _mutex; // guards the members below; held only briefly
    std::condition_variable _changed;
    std::deque<Pass> _passes; // the first one is being decoded, or is next
    double _outputRate = 0;   // 0 if not known yet
    double _linkRate = 0;
    bool _isResetDue = false; // the node was stopped, but ring and writer are not reset yet
    bool _isPathDue = false;  // the rates have changed
    bool _hasDecoder = false; // the decoder's thread runs; started with the first pass
    bool _ended = false;
    int _completionsUnderWay = 0;
    std::chrono::steady_clock::time_point _lastCompletion; // when it returned
    bool _mayBeScheduled =
        false; // set when a completion handler returns, cleared when `provide` has waited in vain

    DispatchQueue _completions{"AVAudioPlayerNode.completions"};
};

} // namespace platform

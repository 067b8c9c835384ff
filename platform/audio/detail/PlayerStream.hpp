// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What sounds of a player node: a schedule of files, the thread that decodes them ahead into a ring, and the
// reader of that ring on the audio thread. Control operations may be called from any other thread.
//
// The ring holds frames in the format of the file that was scheduled first since the last stop; passes over
// files of another format are converted to it by the decoder, and the state of that conversion, too, runs on
// over the seams. The reader takes the frames from the ring's rate over the link's to the output device's.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/audio/detail/PassWriter.hpp"
#include "platform/audio/detail/RatePath.hpp"
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/realtime/FrameRing.hpp"
#include "platform/realtime/Gate.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

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
    [[nodiscard]] bool isPlaying() const;
    /// Ends both threads' work for good; completions that were not called are dropped.
    void shutDown();

    /// Returns frames at `rate` from now on, which pass a link of `linkRate`; `offline`: whoever renders
    /// calls `provide` first. The engine's control side.
    void setOutput(double linkRate, double rate, bool offline);
    /// Offline only, on the thread that renders: decode here until `frames` frames of output are there; with
    /// the schedule empty, wait a while for what the last completion may still schedule, until `stop` is
    /// requested.
    void provide(std::uint32_t frames, const std::stop_token& stop);
    /// Returns whether `provide` would have nothing to do. Offline only, on the thread that renders.
    [[nodiscard]] bool isProvided(std::uint32_t frames);

    /// Writes `frames` frames (at most MaximumFrames) into `channels` planes. If `linkChannels` is not 0 and
    /// narrower, the sound passes through that many channels. Audio thread.
    void render(float* const* planes, std::uint32_t channels, std::uint32_t linkChannels,
                std::uint32_t frames) noexcept;
    /// Returns the number of blocks for which frames were missing while a pass was being played.
    [[nodiscard]] std::uint64_t underruns() const noexcept { return _shared.underruns.load(); }

    static constexpr std::uint32_t MaximumFrames = 1024;

  private:
    struct Pass {
        std::shared_ptr<AVAudioFile> file;
        std::int64_t silentFrames;
        std::function<void()> completion;
    };

    void runDecoder();
    bool decodeSome();
    void configureRing(const AVAudioFormat& format);
    void makePath();
    [[nodiscard]] RatePath::Rates wantedRates() const;
    void updateGate();
    void complete(std::function<void()> completion);
    void wakeDecoder() noexcept;
    void prime();
    [[nodiscard]] std::uint32_t ringFramesFor(std::uint32_t outputFrames) const;
    void readRing(float* const* planes, std::uint32_t frames) noexcept;
    void readDirectly(float* const* planes, std::uint32_t frames) noexcept;

    // All that the audio thread shares with the others. `gate` is open while the node plays and the ring is
    // primed; the plain members belong to the audio thread while it is open (of the ring: its reading end)
    // and to the holder of _mutex while it is closed.
    struct Shared {
        Gate gate;
        FrameRing ring;
        std::unique_ptr<RatePath> path; // ring -> link -> output; null while the ring is not configured
        std::vector<float> scratch;     // MaximumFrames of the ring's channels, planar
        std::vector<float*> scratchPlanes;
        std::vector<float> linkScratch; // the same for a narrower link
        std::vector<float*> linkPlanes;
        std::atomic<bool> decoderSleeps{false};
        std::atomic<bool> offline{false};      // the decoder need not be woken
        std::atomic<bool> passUnderWay{false}; // frames are due: a short ring is an underrun
        std::atomic<std::uint64_t> underruns{0};
        WakeSignal wake; // signalled when the decoder sleeps and should not
    };
    Shared _shared;

    mutable std::mutex _mutex; // guards the fields below; held for one step of decoding at most
    std::condition_variable _scheduleChanged;
    std::deque<Pass> _passes;  // front: under way
    PassWriter _writer;        // of the front pass
    AVAudioFormat _ringFormat; // no channels: not configured
    double _outputRate = 0;    // 0: not known yet
    double _linkRate = 0;
    bool _primed = false; // the ring holds enough to begin with
    bool _playing = false;
    bool _ended = false;
    int _completionsUnderWay = 0;
    std::chrono::steady_clock::time_point _lastCompletion; // returned at
    bool _mayBeScheduled = false; // a completion was called since `provide` last waited in vain

    DispatchQueue _completions{"AVAudioPlayerNode.completions"};
    std::thread _decoder; // started with the first pass
};

} // namespace platform

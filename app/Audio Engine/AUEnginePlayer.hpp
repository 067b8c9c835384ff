// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The playback engine: player node -> effect (or nothing) -> main mixer -> output, one audio file at a time,
// played in an endless loop. The extension manager owns the one engine player; the screen is its delegate.
//
// Threads: `start`, `stop`, `toggle` and `load` are called on the main thread, `connect` on the thread that
// completes the effect's instantiation. Changes of the play state and loop decisions run one at a time on
// `stateChangeQueue`; the delegate is called on the main queue, except for `onFileSelect`, which runs on the
// caller of `load`.
#pragma once

#include "app/Audio Engine/AUEnginePlayerDelegate.hpp"
#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/foundation/URL.hpp"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace tonewright {

/// Always owned by a `std::shared_ptr`. Releasing it stops nothing: owners call `finalize` first.
class AUEnginePlayer : public std::enable_shared_from_this<AUEnginePlayer> {
  public:
    /// Builds the graph's nodes and attaches the player node; nothing is connected or logged.
    AUEnginePlayer();
    virtual ~AUEnginePlayer() = default;
    AUEnginePlayer(const AUEnginePlayer&) = delete;
    AUEnginePlayer& operator=(const AUEnginePlayer&) = delete;

    /// Stops, then removes the effect.
    virtual void finalize();
    /// Removes the effect: `connect` with no unit.
    virtual void disconnect();
    /// Opens the audio file at `url` and wires it into the graph in place of the previous one. A file that
    /// cannot be opened is logged and changes neither file nor graph; an absent URL is fatal.
    virtual void load(const std::optional<platform::URL>& url);
    /// Loads a random file, then starts playing if stopped. Waits for the state queue: never call it from
    /// there.
    virtual void start();
    /// Stops playing if playing. Waits for the state queue: never call it from there.
    virtual void stop();
    /// Stops if playing, else starts; returns the new play state.
    virtual bool toggle();
    /// Replaces the active effect; no unit removes it. `completion` is called exactly once, on the calling
    /// thread, before the return.
    virtual void connect(
        const std::shared_ptr<platform::AVAudioUnit>& avAudioUnit,
        const std::function<void()>& completion = [] {});

  private:
    virtual void randomizeFile();
    virtual void setSessionActive(bool active);
    virtual void startPlayingInternal();
    virtual void scheduleEffectLoop();
    virtual void stopPlayingInternal();
    virtual void resetAudioLoop();

    void takeOutActiveUnit(const std::shared_ptr<platform::AVAudioUnit>& unit);
    void installMIDIOutput(platform::AVAudioUnit& unit);
    void wireDirectly(const platform::AVAudioFile& opened);
    void wireThroughEffect(const platform::AVAudioFile& opened,
                           const std::shared_ptr<platform::AVAudioUnit>& unit);
    void connectMixerToOutput();
    void passCompleted();
    void reportLoop();
    void reportPlayerState(bool playing);

    // Copies or assigns a field that threads share; the lock is held for nothing else.
    template <class T>
    [[nodiscard]] T shared(const T& field) const {
        const std::scoped_lock lock(_fieldMutex);
        return field;
    }
    template <class T>
    void share(T& field, T value) {
        const std::scoped_lock lock(_fieldMutex);
        std::swap(field, value); // the old value is released after the lock
    }

    const platform::MIDIOutputEventBlock midiOutBlock;

  public:
    /// Receives the reports; held strongly. Set it on the main thread before the first start.
    std::shared_ptr<AUEnginePlayerDelegate> delegate;
    const std::shared_ptr<platform::AVAudioEngine> engine;

  private:
    // Shared between threads: `isPlaying` is written on `stateChangeQueue` and read anywhere;
    // `activeAVAudioUnit`, `loopCount`, `file` and `fileURL` are read and written under `_fieldMutex`, a leaf
    // lock that is never held across a call. The order of effects is determined by the queues, not by these.
    std::shared_ptr<platform::AVAudioUnit> activeAVAudioUnit;
    std::atomic<bool> isPlaying{false};
    std::int64_t loopCount = 0; // completed passes of the current file
    const std::shared_ptr<platform::DispatchQueue> stateChangeQueue;
    const std::shared_ptr<platform::AVAudioPlayerNode> player;
    std::shared_ptr<platform::AVAudioFile> file;
    std::optional<platform::URL> fileURL; // of the current file, or of the last that `load` tried
    mutable std::mutex _fieldMutex;
};

} // namespace tonewright

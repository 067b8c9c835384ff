// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Plays one audio file at a time in an endless loop: player node -> effect (if any) -> main mixer -> output.
// The extension manager owns the only engine player; the main screen is its delegate.
//
// Threads: `start`, `stop`, `toggle` and `load` are called on the main thread, `connect` on the thread that
// completes the effect's instantiation. Changes of the play state and the decision to play another pass run
// one at a time on `stateChangeQueue`. The delegate is called on the main queue, except for `onFileSelect`,
// which is called on the thread that called `load`.
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

/// Always owned by a `std::shared_ptr`. The destructor does not stop playback, so owners must call `finalize`
/// first.
class AUEnginePlayer : public std::enable_shared_from_this<AUEnginePlayer> {
  public:
    /// Creates the engine and the player node and attaches the node. Makes no connections and logs nothing.
    AUEnginePlayer();
    virtual ~AUEnginePlayer() = default;
    AUEnginePlayer(const AUEnginePlayer&) = delete;
    AUEnginePlayer& operator=(const AUEnginePlayer&) = delete;

    /// Stops playback, then removes the effect.
    virtual void finalize();
    /// Removes the effect by calling `connect` with null.
    virtual void disconnect();
    /// Opens the audio file at `url` and connects the graph for its format. If the file cannot be opened,
    /// logs that and keeps the current file and graph. It is a fatal error if `url` has no value.
    virtual void load(const std::optional<platform::URL>& url);
    /// Loads a random file, then starts playback if it is stopped. Waits for `stateChangeQueue`, so it must
    /// not be called on that queue.
    virtual void start();
    /// Stops playback if it is running. Waits for `stateChangeQueue`, so it must not be called on that queue.
    virtual void stop();
    /// Starts or stops playback and returns whether it is running now.
    virtual bool toggle();
    /// Replaces the active effect, or removes it if `avAudioUnit` is null. Calls `completion` exactly once,
    /// on the calling thread, before returning.
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

    // These two functions copy or assign a field that threads share. They hold the lock for nothing else.
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
    /// Receives the reports. A strong reference; set it on the main thread before the first start.
    std::shared_ptr<AUEnginePlayerDelegate> delegate;
    const std::shared_ptr<platform::AVAudioEngine> engine;

  private:
    // Shared between threads: `isPlaying` is written on `stateChangeQueue` and read on any thread.
    // `activeAVAudioUnit`, `loopCount`, `file` and `fileURL` are guarded by `_fieldMutex`, which is never
    // held while other functions are called. The queues determine the order of changes, not these fields.
    std::shared_ptr<platform::AVAudioUnit> activeAVAudioUnit;
    std::atomic<bool> isPlaying{false};
    std::int64_t loopCount = 0; // completed passes of the current file
    const std::shared_ptr<platform::DispatchQueue> stateChangeQueue;
    const std::shared_ptr<platform::AVAudioPlayerNode> player;
    std::shared_ptr<platform::AVAudioFile> file;
    std::optional<platform::URL> fileURL; // the current file, or the last one that `load` tried to open
    mutable std::mutex _fieldMutex;
};

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Starts and stops playback and the audio session.
#include "app/Audio Engine/AUEnginePlayer.hpp"

#include "app/Audio Engine/midiOutput.hpp"
#include "platform/audio/AVAudioSession.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"

#include <string>

namespace tonewright {

using platform::DispatchQueue;
using platform::print;

namespace {
// The maker's domain in reverse and the purpose of the queue.
constexpr const char* StateQueueLabel = "example.tonewright.AUEnginePlayer.stateQueue";
} // namespace

AUEnginePlayer::AUEnginePlayer()
    : midiOutBlock(logMIDIOutputEvent)
    , engine(platform::AVAudioEngine::create())
    , stateChangeQueue(std::make_shared<DispatchQueue>(StateQueueLabel))
    , player(platform::AVAudioPlayerNode::create()) {
    engine->attachNode(player);
}

void AUEnginePlayer::finalize() {
    const auto self = shared_from_this(); // `stop` waits for completions, which may release the player
    stop();
    disconnect();
}

void AUEnginePlayer::start() {
    const auto self = shared_from_this(); // the delegate may release the player
    randomizeFile();
    stateChangeQueue->sync([this] {
        if (isPlaying) return;
        startPlayingInternal();
        reportPlayerState(true);
    });
}

void AUEnginePlayer::stop() {
    const auto self = shared_from_this();
    stateChangeQueue->sync([this] {
        if (!isPlaying) return;
        stopPlayingInternal();
        reportPlayerState(false);
    });
}

bool AUEnginePlayer::toggle() {
    const auto self = shared_from_this();
    if (isPlaying) {
        stop();
    } else {
        start();
    }
    return isPlaying;
}

void AUEnginePlayer::startPlayingInternal() {
    setSessionActive(true);
    scheduleEffectLoop();
    connectMixerToOutput();
    if (const auto error = engine->start()) {
        isPlaying = false;
        platform::fatal(
            "AUEnginePlayer::ERROR: Could not start audio engine. error: " + error->description() + ".");
    }
    player->play();
    isPlaying = true;
}

void AUEnginePlayer::stopPlayingInternal() {
    player->stop(); // its completions are queued behind this task, which sets isPlaying to false
    engine->stop();
    isPlaying = false;
    setSessionActive(false);
}

void AUEnginePlayer::setSessionActive(bool active) {
    auto& session = platform::AVAudioSession::sharedInstance();
    auto error =
        session.setCategory(platform::AVAudioSessionCategory::Playback, platform::AVAudioSessionMode::Default,
                            platform::AVAudioSession::CategoryOptions::None);
    if (!error) error = session.setActive(active, platform::AVAudioSession::SetActiveOptions::None);
    if (error) {
        platform::fatal("AUEnginePlayer::ERROR: Could not set audio session active " +
                        std::string(active ? "true" : "false") + ". system error: " + error->description() +
                        ".");
    }
    print("AUEnginePlayer: Audio session was set active."); // printed for a deactivation too
}

void AUEnginePlayer::reportPlayerState(bool playing) {
    DispatchQueue::main().async([self = shared_from_this(), playing] {
        print(playing ? "AUEnginePlayer: Audio engine starting." : "AUEnginePlayer: Audio engine stopping.");
        if (const auto receiver = self->delegate) receiver->onPlayerStateChanged(playing);
    });
}

} // namespace tonewright

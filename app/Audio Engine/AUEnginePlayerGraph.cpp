// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Connects the effect to the graph and disconnects it.
#include "app/Audio Engine/AUEnginePlayer.hpp"
#include "platform/audio/AVAudioMixerNode.hpp"
#include "platform/audio/AVAudioOutputNode.hpp"
#include "platform/foundation/console.hpp"

namespace tonewright {

using platform::AVAudioUnit;
using platform::print;

void AUEnginePlayer::connect(const std::shared_ptr<AVAudioUnit>& avAudioUnit,
                             const std::function<void()>& completion) {
    const auto self = shared_from_this(); // the completion may release the player
    print(avAudioUnit
              ? "AUEnginePlayer: A new audio unit will be connected."
              : "AUEnginePlayer::WARNING: Function connect() with argument 'nil' causes disconnection.");

    const auto rewiringComplete = [&] {
        if (isPlaying) player->play();
        completion();
    };

    bool directLinkIsMissing = true;
    if (const auto active = shared(activeAVAudioUnit)) {
        takeOutActiveUnit(active);
        directLinkIsMissing = false;
    }
    share(activeAVAudioUnit, avAudioUnit);
    connectMixerToOutput();
    if (isPlaying) player->pause(); // unlike stop(), this keeps the schedule and calls no completion

    if (!avAudioUnit) {
        if (directLinkIsMissing) resetAudioLoop();
        rewiringComplete();
        print("AUEnginePlayer: The audio unit was set to 'nil'.");
        return;
    }

    installMIDIOutput(*avAudioUnit);
    engine->attachNode(avAudioUnit);
    print("AUEnginePlayer: Audio unit was attached.");
    engine->disconnectNodeInput(engine->mainMixerNode());
    if (const auto opened = shared(file)) {
        const auto format = opened->processingFormat();
        engine->connect(player, avAudioUnit, format);
        print("AUEnginePlayer: Audio Unit was connected to the player.");
        engine->connect(avAudioUnit, engine->mainMixerNode(), format);
        print("AUEnginePlayer: Audio Unit was connected to the main mixer.");
    } else {
        print("AUEnginePlayer::ERROR: There was a problem with the file processing format or the file is nil "
              "(yet).");
    }
    rewiringComplete();
}

void AUEnginePlayer::takeOutActiveUnit(const std::shared_ptr<AVAudioUnit>& unit) {
    engine->disconnectNodeInput(unit);
    engine->disconnectNodeInput(engine->mainMixerNode());
    resetAudioLoop();
    engine->detachNode(unit);
    print("AUEnginePlayer: Audio unit was disconnecting and detaching.");
    share(activeAVAudioUnit, {});
}

void AUEnginePlayer::installMIDIOutput(AVAudioUnit& unit) {
    const auto& audioUnit = unit.auAudioUnit();
    if (audioUnit->MIDIOutputNames().empty()) return;
    print("AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling block.");
    audioUnit->setMIDIOutputEventBlock(midiOutBlock);
}

void AUEnginePlayer::disconnect() {
    connect(nullptr, [] { print("AUEnginePlayer: Performed audio unit disconnection."); });
}

void AUEnginePlayer::resetAudioLoop() {
    if (const auto opened = shared(file)) {
        engine->connect(player, engine->mainMixerNode(), opened->processingFormat());
    } else {
        print("AUEnginePlayer: ERROR: There is a problem with the audio file processing format.");
    }
}

void AUEnginePlayer::connectMixerToOutput() {
    const auto output = engine->outputNode();
    engine->connect(engine->mainMixerNode(), output, output->outputFormatForBus(0));
}

} // namespace tonewright

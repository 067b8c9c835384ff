// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Chooses and opens the file, and repeats it endlessly.
#include "app/Audio Engine/AUEnginePlayer.hpp"
#include "platform/audio/AVAudioMixerNode.hpp"
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/foundation/random.hpp"

#include <string>

namespace tonewright {

using platform::AVAudioFile;
using platform::AVAudioUnit;
using platform::print;
using platform::unwrap;
using platform::URL;

namespace {
// The resources 1.m4a to 80.m4a are the loops.
constexpr std::int64_t FirstLoop = 1;
constexpr std::int64_t LastLoop = 80;
constexpr const char* LoopExtension = "m4a";
} // namespace

void AUEnginePlayer::load(const std::optional<URL>& url) {
    const auto self = shared_from_this(); // the delegate may release the player
    share(loopCount, std::int64_t{0});
    print("AUEnginePlayer: Audio file at '" + unwrap(url).path() +
          "' was selected for loading into the player.");
    share(fileURL, url);

    const auto opened = AVAudioFile::open(*url);
    if (!opened) {
        print("AUEnginePlayer::ERROR: Could not create AVAudioFile instance for URL 'Optional(" +
              url->absoluteString() + ")'. error: " + opened.error().description() + ".");
        return;
    }
    share(file, opened.value());
    if (const auto receiver = delegate) receiver->onFileSelect(url->path());

    // The delegate may have loaded another file meanwhile, so this connects the current file.
    if (const auto unit = shared(activeAVAudioUnit)) {
        wireThroughEffect(*shared(file), unit);
    } else {
        wireDirectly(*shared(file));
    }
}

void AUEnginePlayer::wireDirectly(const AVAudioFile& opened) {
    if (isPlaying) player->stop();
    engine->disconnectNodeInput(engine->mainMixerNode());
    engine->connect(player, engine->mainMixerNode(), opened.processingFormat());
    print("AUEnginePlayer: The player was connected to the mainMixerNode.");
    if (isPlaying) player->play();
}

void AUEnginePlayer::wireThroughEffect(const AVAudioFile& opened, const std::shared_ptr<AVAudioUnit>& unit) {
    if (isPlaying) player->stop();
    engine->disconnectNodeInput(engine->mainMixerNode());
    print("AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.");
    engine->disconnectNodeInput(unit);
    print("AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.");
    engine->connect(player, unit, std::nullopt);
    print(std::to_string(opened.processingFormat().channelCount));
    print("AUEnginePlayer: Audio unit re-connecting to the player.");
    engine->connect(unit, engine->mainMixerNode(), std::nullopt);
    print("AUEnginePlayer: Audio unit re-connectingto the main mixer.");
    if (isPlaying) player->play();
}

void AUEnginePlayer::randomizeFile() {
    const std::string name = std::to_string(platform::randomInteger(FirstLoop, LastLoop));
    const auto url = platform::Bundle::forClass<AUEnginePlayer>().URLForResource(name, LoopExtension);
    share(fileURL, url);
    if (url) {
        load(url);
        print(unwrap(shared(fileURL)).path());
        engine->prepare();
    } else {
        // A program without its loops is broken: there is no URL, so unwrapping it is a fatal error.
        print("AUEnginePlayer::ERROR: The audio file '" + unwrap(shared(fileURL)).path() +
              "' was not found inside the resource folder for the app.");
    }
}

void AUEnginePlayer::scheduleEffectLoop() {
    const auto opened = shared(file);
    if (!opened) {
        print("AUEnginePlayer::ERROR: `file` parameter must not be nil.");
        return;
    }
    player->scheduleFile(opened, std::nullopt, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) self->passCompleted();
    });
}

void AUEnginePlayer::passCompleted() {
    stateChangeQueue->async([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (!self || !self->isPlaying) return;
        platform::DispatchQueue::main().async([self] { self->reportLoop(); });
        self->scheduleEffectLoop();
    });
}

void AUEnginePlayer::reportLoop() {
    if (const auto receiver = delegate) receiver->onLoop(shared(loopCount));
    const std::int64_t count = platform::checkedAdd<std::int64_t>(shared(loopCount), 1);
    share(loopCount, count);
    print("AUEnginePlayer: Current audio file '" + unwrap(shared(fileURL)).path() +
          "' looped: " + std::to_string(count) + ".");
}

} // namespace tonewright

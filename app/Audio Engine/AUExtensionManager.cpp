// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/Audio Engine/AUExtensionManager.hpp"

#include "app/Audio Engine/componentReport.hpp"
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/effects/AVAudioUnitComponentManager.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"

#include <utility>

namespace tonewright {

using platform::AudioComponentDescription;
using platform::AVAudioUnit;
using platform::AVAudioUnitComponent;
using platform::print;
using platform::unwrap;

std::shared_ptr<AUExtensionManager>
AUExtensionManager::create(std::shared_ptr<AUExtensionManagerDelegate> receiver) {
    std::shared_ptr<AUExtensionManager> manager(
        new AUExtensionManager(std::move(receiver))); // the constructor is private
    manager->loadForRelease();
    return manager;
}

AUExtensionManager::AUExtensionManager(std::shared_ptr<AUExtensionManagerDelegate> receiver)
    : auEngine(std::make_shared<AUEnginePlayer>())
    , delegate(std::move(receiver)) {}

void AUExtensionManager::loadForRelease() {
    print("NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!");
    platform::DispatchQueue::global().async([self = shared_from_this()] {
        auto& registry = platform::AVAudioUnitComponentManager::sharedAudioUnitComponentManager();
        self->_availableAudioUnits = registry.componentsMatchingDescription(self->componentDescription);
        if (self->_availableAudioUnits.empty()) {
            print("ERROR: There were no audio units found.");
            return;
        }
        self->selectfoundComponent(self->_availableAudioUnits.front(), [self] { self->onFoundComponent(); });
    });
}

void AUExtensionManager::selectfoundComponent(const std::optional<AVAudioUnitComponent>& component,
                                              const Completion& completionHandler) {
    if (!component) {
        print("ERROR: Component is nil.");
        return;
    }
    print("AUExtensionManager: Loaded component has following properties.");
    log(component->audioComponentDescription());
    selectAudioUnitWithComponentDescription(component->audioComponentDescription(), completionHandler);
}

void AUExtensionManager::log(const AudioComponentDescription& description) {
    printComponentReport(description);
}

void AUExtensionManager::selectAudioUnitWithComponentDescription(
    const std::optional<AudioComponentDescription>& description, const Completion& completionHandler) {
    if (!description) {
        print("Error: Component description is nil.");
        return;
    }
    const auto instantiated = [self = shared_from_this(), description = *description,
                               completionHandler](const std::shared_ptr<AVAudioUnit>& unit, const auto&) {
        if (!unit) {
            print(describe(description));
            print("Error: Could not instantiate audio unit.");
            return;
        }
        print("AUExtensionManager: Audio unit was found, making connections now ...");
        unit->auAudioUnit()->setContextName("running in distribution host");
        self->auEngine->connect(unit, [&] {
            print("AUExtensionManager: Performed audio unit connection.");
            const auto receiver = self->delegate;
            unwrap(receiver).onFoundComponent(unit);
            completionHandler();
        });
    };
    AVAudioUnit::instantiate(*description, platform::AudioComponentInstantiationOptions::None, instantiated);
}

void AUExtensionManager::onFoundComponent() {
    connectParametersToControls();
    if (const auto receiver = delegate) receiver->onEngineInitialized();
}

void AUExtensionManager::connectParametersToControls() {
    if (!audioUnit) print("WARNING: Audio unit is nil (yet?).");
}

std::vector<Preset> AUExtensionManager::presets() const {
    std::vector<Preset> presets;
    if (!audioUnit) return presets;
    if (const auto factoryPresets = audioUnit->factoryPresets()) {
        for (const auto& preset : *factoryPresets) presets.push_back(Preset(preset));
    }
    return presets;
}

std::optional<Preset> AUExtensionManager::currentPreset() const {
    if (!audioUnit) return std::nullopt;
    const auto preset = audioUnit->currentPreset();
    if (!preset) return std::nullopt;
    return Preset(*preset);
}

void AUExtensionManager::setCurrentPreset(const std::optional<Preset>& preset) {
    if (!audioUnit) return;
    audioUnit->setCurrentPreset(preset ? std::optional(preset->audioUnitPreset) : std::nullopt);
}

bool AUExtensionManager::togglePlayback() {
    return auEngine->toggle();
}

void AUExtensionManager::cleanup() {
    auEngine->finalize();
}

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/AVAudioUnitComponentManager.hpp"

namespace platform {

AVAudioUnitComponentManager& AVAudioUnitComponentManager::sharedAudioUnitComponentManager() {
    static AVAudioUnitComponentManager manager;
    return manager;
}

std::vector<AVAudioUnitComponent> AVAudioUnitComponentManager::componentsMatchingDescription(
    const AudioComponentDescription& description) const {
    std::vector<AVAudioUnitComponent> components;
    for (auto& record : provider()->componentsMatching(description)) {
        components.emplace_back(std::move(record));
    }
    return components;
}

std::shared_ptr<ComponentProvider> AVAudioUnitComponentManager::provider() const {
    const std::scoped_lock lock(_mutex);
    if (!_provider) _provider = makeLv2ComponentProvider();
    return _provider;
}

void AVAudioUnitComponentManager::setProvider(std::shared_ptr<ComponentProvider> provider) {
    const std::scoped_lock lock(_mutex);
    _provider = std::move(provider);
}

} // namespace platform

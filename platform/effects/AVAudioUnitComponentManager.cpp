// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/AVAudioUnitComponentManager.hpp"

#include "platform/effects/seams.hpp"

#include <mutex>
#include <utility>

namespace platform {
namespace {

struct SharedProvider {
    std::mutex mutex;                            // held only while the pointer is copied or replaced
    std::shared_ptr<ComponentProvider> provider; // guarded by `mutex`; created at first use
};

// Never destroyed, because a search can still be running on the global queue when the process exits.
SharedProvider& sharedProvider() {
    static auto* const shared = new SharedProvider;
    return *shared;
}

} // namespace

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
    SharedProvider& shared = sharedProvider();
    const std::scoped_lock lock(shared.mutex);
    if (!shared.provider) shared.provider = makeLv2ComponentProvider();
    return shared.provider;
}

void setComponentProvider(std::shared_ptr<ComponentProvider> provider) {
    const std::scoped_lock lock(sharedProvider().mutex);
    sharedProvider().provider.swap(provider);
}

} // namespace platform

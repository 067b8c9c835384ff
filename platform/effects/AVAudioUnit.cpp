// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/AVAudioUnit.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/effects/AVAudioUnitComponentManager.hpp"
#include "platform/foundation/console.hpp"

namespace platform {
namespace {

Result<std::shared_ptr<AUAudioUnit>> makeUnit(const AudioComponentDescription& description) {
    const auto provider = AVAudioUnitComponentManager::sharedAudioUnitComponentManager().provider();
    const auto records = provider->componentsMatching(description);
    if (records.empty()) return Error("AudioComponent", 1, "No effect of that description is installed.");
    return provider->instantiate(records.front());
}

} // namespace

void AVAudioUnit::instantiate(const AudioComponentDescription& description,
                              AudioComponentInstantiationOptions, Completion completion) {
    DispatchQueue::global().async([description, completion = std::move(completion)]() mutable {
        auto made = makeUnit(description);
        if (!made) warn(made.error().localizedDescription());
        DispatchQueue::main().async([made = std::move(made), completion = std::move(completion)] {
            if (made) {
                completion(std::make_shared<AVAudioUnit>(made.value()), std::nullopt);
            } else {
                completion(nullptr, made.error());
            }
        });
    });
}

} // namespace platform

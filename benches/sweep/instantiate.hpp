// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the programs of the sweep have in common: their lines, and an effect that is found as the application
// finds it.
#pragma once

#include "platform/dispatch/RunLoop.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/foundation/console.hpp"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace bench {

/// Prints a word and its value.
inline void say(const std::string& word, const std::string& value) {
    platform::print(word + '\t' + value);
}

/// Makes the effect `uri`, or says why not and returns null.
inline std::shared_ptr<platform::AVAudioUnit> instantiate(const char* uri) {
    // Whatever is searched for, the effect that the environment names comes first.
    ::setenv("TONEWRIGHT_EFFECT", uri, 1);
    std::shared_ptr<platform::AVAudioUnit> unit;
    bool isAnswered = false;
    platform::AVAudioUnit::instantiate(
        {platform::fourCharCode("aufx"), platform::fourCharCode("swep"), platform::fourCharCode("TEST"), 0,
         0},
        platform::AudioComponentInstantiationOptions::None,
        [&](std::shared_ptr<platform::AVAudioUnit> made, const std::optional<platform::Error>& failure) {
            isAnswered = true;
            unit = std::move(made);
            if (failure) say("refused", failure->localizedDescription());
        });
    platform::RunLoop::current().runUntil([&] { return isAnswered; }, 60);
    return unit;
}

} // namespace bench

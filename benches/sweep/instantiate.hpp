// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by the programs of the sweep: the format of their lines, and instantiating an effect as the
// application does.
#pragma once

#include "platform/dispatch/RunLoop.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/foundation/console.hpp"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

namespace bench {

/// Prints a line with a word and its value.
inline void say(const std::string& word, const std::string& value) {
    platform::print(word + '\t' + value);
}

/// Instantiates the effect `uri`, or prints the reason why not and returns null.
inline std::shared_ptr<platform::AVAudioUnit> instantiate(const char* uri) {
    // The effect named by this variable comes first, whatever description is searched for.
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

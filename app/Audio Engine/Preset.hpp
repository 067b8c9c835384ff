// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A preset of the effect.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"

#include <cstdint>
#include <string>
#include <utility>

namespace tonewright {

/// Wraps a platform preset. Only AUExtensionManager creates presets.
class Preset {
  public:
    [[nodiscard]] std::int64_t number() const { return audioUnitPreset.number(); }
    [[nodiscard]] std::string name() const { return audioUnitPreset.name(); }

  private:
    friend class AUExtensionManager;
    explicit Preset(platform::AUAudioUnitPreset preset)
        : audioUnitPreset(std::move(preset)) {}
    platform::AUAudioUnitPreset audioUnitPreset;
};

} // namespace tonewright

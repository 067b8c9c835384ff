// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What one LV2 bundle's manifest tells the registry: the plug-ins that it contains, those about which it has
// something, and the component codes that it states. Reading it loads no code and none of the plug-ins'
// details.
#pragma once

#include "platform/effects/AudioComponentDescription.hpp"

#include <string>
#include <vector>

namespace platform::lv2 {

/// The codes that a manifest states for a plug-in: the properties of the vocabulary in docs/HOSTING.md.
struct StatedComponent {
    std::string pluginURI;
    AudioComponentDescription description;
    std::string displayName; // empty when not stated

    friend bool operator==(const StatedComponent&, const StatedComponent&) = default;
};

struct Manifest {
    std::vector<std::string> plugins; // the plug-ins that live in this bundle, sorted
    std::vector<std::string> others;  // plug-ins about which it has something: a preset, an interface; sorted
    std::vector<StatedComponent> components; // sorted by plug-in
    bool hasMistakes = false;                // reported on standard error each time it is read

    friend bool operator==(const Manifest&, const Manifest&) = default;
};

/// Reads `manifest.ttl` in `bundlePath`. A damaged file yields what precedes the damage and is reported on
/// standard error; one that cannot be read yields nothing.
[[nodiscard]] Manifest readManifest(const std::string& bundlePath);

} // namespace platform::lv2

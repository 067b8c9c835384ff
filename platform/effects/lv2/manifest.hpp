// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The manifest of an LV2 bundle: the plug-ins that the bundle contains, other plug-ins about which it
// contains data, and the component codes that it states. Reading a manifest loads neither code nor the
// plug-ins' descriptions.
#pragma once

#include "platform/effects/AudioComponentDescription.hpp"

#include <string>
#include <vector>

namespace platform::lv2 {

/// The component codes that a manifest states for a plug-in, with the vocabulary described in
/// docs/HOSTING.md.
struct StatedComponent {
    std::string pluginURI;
    AudioComponentDescription description;
    std::string displayName; // empty if not stated

    friend bool operator==(const StatedComponent&, const StatedComponent&) = default;
};

struct Manifest {
    std::vector<std::string> plugins;        // the plug-ins in this bundle, sorted
    std::vector<std::string> others;         // subjects of other data, such as presets and interfaces; sorted
    std::vector<StatedComponent> components; // sorted by plug-in URI
    bool hasMistakes = false; // mistakes are reported on standard error each time the manifest is read

    friend bool operator==(const Manifest&, const Manifest&) = default;
};

/// Reads `manifest.ttl` in `bundlePath`. Reports a damaged file on standard error and returns the data before
/// the damage. Returns an empty manifest if the file cannot be read.
[[nodiscard]] Manifest readManifest(const std::string& bundlePath);

} // namespace platform::lv2

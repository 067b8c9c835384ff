// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The installed bundles and the contents of their manifests. A file in the user's cache directory keeps them
// from run to run, keyed by the manifests' time stamps, so that a search reads only what changed; the file is
// safe to delete. A value once read; reading it may be done on any thread except the audio thread.
#pragma once

#include "platform/effects/lv2/manifest.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace platform::lv2 {

/// Changes when somebody writes a file: equal stamps mean an unchanged file.
struct FileStamp {
    std::int64_t modifiedNanoseconds = 0;
    std::uint64_t size = 0;
    std::uint64_t node = 0;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

struct IndexedBundle {
    std::string path; // without a trailing "/"
    FileStamp stamp;  // of its manifest
    Manifest manifest;
    bool isOurs = false; // the bundle of the effect that comes with the program
};

class BundleIndex {
  public:
    /// Reads the bundles of the search path, in its order, those of one directory in byte order. A plug-in
    /// that several bundles have belongs to the first.
    [[nodiscard]] static BundleIndex read();

    [[nodiscard]] const std::vector<IndexedBundle>& bundles() const noexcept { return _bundles; }
    /// Returns the bundle that contains the plug-in; null if none is installed.
    [[nodiscard]] const IndexedBundle* bundleOf(const std::string& pluginURI) const noexcept;
    /// Returns the bundles that have something about the plug-in, its own first.
    [[nodiscard]] std::vector<const IndexedBundle*> bundlesAbout(const std::string& pluginURI) const;

  private:
    std::vector<IndexedBundle> _bundles;
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The installed bundles and the contents of their manifests. They are cached in a file in the user's cache
// directory, with the time stamp of each manifest, so that only changed manifests are read again; the file
// can be deleted at any time. `read` may be called on any thread except the audio thread; the result is a
// value.
#pragma once

#include "platform/effects/lv2/manifest.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace platform::lv2 {

/// Identifies a version of a file: equal stamps mean that the file has not changed.
struct FileStamp {
    std::int64_t modifiedNanoseconds = 0;
    std::uint64_t size = 0;
    std::uint64_t node = 0;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

struct IndexedBundle {
    std::string path; // without a trailing "/"
    FileStamp stamp;  // of the manifest
    Manifest manifest;
    bool isOurs = false; // the bundle of the effect that comes with the program
};

class BundleIndex {
  public:
    /// Reads the bundles in the search path: directories in the order of the path, the bundles of a directory
    /// sorted by name. A plug-in that several bundles contain belongs to the first of them.
    [[nodiscard]] static BundleIndex read();

    [[nodiscard]] const std::vector<IndexedBundle>& bundles() const noexcept { return _bundles; }
    /// Returns the bundle that contains the plug-in, or null if none does.
    [[nodiscard]] const IndexedBundle* bundleOf(const std::string& pluginURI) const noexcept;
    /// Returns the bundles with data about the plug-in, its own first; empty if the plug-in is not installed.
    [[nodiscard]] std::vector<const IndexedBundle*> bundlesAbout(const std::string& pluginURI) const;

  private:
    std::vector<IndexedBundle> _bundles;
};

} // namespace platform::lv2

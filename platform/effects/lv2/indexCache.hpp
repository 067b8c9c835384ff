// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The file in which the bundle index is cached.
#pragma once

#include "platform/effects/lv2/BundleIndex.hpp"

#include <map>

namespace platform::lv2 {

/// Returns the cached bundles by path. Returns none if the file is missing, damaged or of another version.
[[nodiscard]] std::map<std::string, IndexedBundle> readIndexCache();
/// Writes the bundles, completely or not at all. If the file cannot be written, the next run only takes
/// longer.
void writeIndexCache(const std::vector<IndexedBundle>& bundles);

} // namespace platform::lv2

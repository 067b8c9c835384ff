// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The file that keeps the bundle index between runs.
#pragma once

#include "platform/effects/lv2/BundleIndex.hpp"

#include <map>

namespace platform::lv2 {

/// Returns the bundles that the last run wrote, by path; none if the file is absent, damaged or of another
/// version.
[[nodiscard]] std::map<std::string, IndexedBundle> readIndexCache();
/// Writes the bundles, completely or not at all. A directory that cannot be written to only costs time in the
/// next run.
void writeIndexCache(const std::vector<IndexedBundle>& bundles);

} // namespace platform::lv2

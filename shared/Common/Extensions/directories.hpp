// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The places that the process works with, and making a directory that is needed. Any thread; the lines come
// through `safeprint` and `debugprint`, later.
#pragma once

#include "platform/foundation/URL.hpp"

#include <optional>

namespace tonewright {

/// Returns the user's documents directory; absent before `getPaths`.
[[nodiscard]] std::optional<platform::URL> documentsURL();
/// Returns the application's resources directory; absent before `getPaths`.
[[nodiscard]] std::optional<platform::URL> resourcesURL();
/// Returns the places for shared audio and MIDI files. Nothing determines them: they are absent.
[[nodiscard]] std::optional<platform::URL> sharedURLAudio();
[[nodiscard]] std::optional<platform::URL> sharedURLMIDI();

/// Determine the documents and resources directories and say them. A program without resources ends here.
void getPaths();

/// Makes the directory at `url`, and those above it, unless something, be it a file, exists there; returns
/// false, and say why, when that fails.
bool ensureDirectoryExists(const platform::URL& url);

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The locations that the process works with, and creating a directory that is needed. Any thread; the lines
// are printed later, through `safeprint` and `debugprint`.
#pragma once

#include "platform/foundation/URL.hpp"

#include <optional>

namespace tonewright {

/// Returns the user's documents directory; absent before `getPaths`.
[[nodiscard]] std::optional<platform::URL> documentsURL();
/// Returns the application's resources directory; absent before `getPaths`.
[[nodiscard]] std::optional<platform::URL> resourcesURL();
/// Returns the locations of shared audio and MIDI files. Nothing sets them: they are absent.
[[nodiscard]] std::optional<platform::URL> sharedURLAudio();
[[nodiscard]] std::optional<platform::URL> sharedURLMIDI();

/// Determines the documents and resources directories and prints them. Fatal if the program has no resources.
void getPaths();

/// Creates the directory at `url`, and its parents, unless something, even a file, exists there; returns
/// false, and prints the reason, when that fails.
bool ensureDirectoryExists(const platform::URL& url);

} // namespace tonewright

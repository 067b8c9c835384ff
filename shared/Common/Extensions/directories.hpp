// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The directories of the application, and a function that creates a directory. Any thread. Lines are printed
// later, through `safeprint` and `debugprint`.
#pragma once

#include "platform/foundation/URL.hpp"

#include <optional>

namespace tonewright {

/// Returns the user's documents directory, or no value before `getPaths` has been called.
[[nodiscard]] std::optional<platform::URL> documentsURL();
/// Returns the application's resources directory, or no value before `getPaths` has been called.
[[nodiscard]] std::optional<platform::URL> resourcesURL();
/// These two functions return the directories of shared audio and MIDI files. Nothing sets them, so they
/// return no value.
[[nodiscard]] std::optional<platform::URL> sharedURLAudio();
[[nodiscard]] std::optional<platform::URL> sharedURLMIDI();

/// Determines the documents and resources directories and prints them. A missing resources directory is a
/// fatal error.
void getPaths();

/// Creates the directory at `url` and its parents, unless a directory or file exists at `url`. Returns false
/// and prints the reason if that fails.
bool ensureDirectoryExists(const platform::URL& url);

} // namespace tonewright

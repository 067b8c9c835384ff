// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Encodes samples as an m4a file that loops exactly. Callable from any thread; calls share nothing.
#pragma once

#include "loops/synth/Render.hpp"

#include <filesystem>
#include <optional>
#include <string>

namespace tonewright::loops {

/// Writes `pcm` as AAC-LC in an m4a file; returns the reason why not, or no value on success.
///
/// A codec of overlapping blocks knows no samples before the first or after the last one, and its error is
/// largest there. The encoder is therefore fed the loop as a circle: its end before the beginning, and its
/// beginning after the end. The file keeps two packets from before the beginning, with which the decoder
/// starts up; the edit list hides them and sets the length to the exact frame.
[[nodiscard]] std::optional<std::string> encodeLoop(const Pcm& pcm, const std::string& title,
                                                    const std::filesystem::path& file);

/// Limits the messages of the encoding library to errors, for the whole process.
void quietEncoder() noexcept;

} // namespace tonewright::loops

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// From samples to an m4a file that loops exactly. Any thread; calls do not share anything.
#pragma once

#include "loops/synth/Render.hpp"

#include <filesystem>
#include <optional>
#include <string>

namespace tonewright::loops {

/// Writes `pcm` as AAC-LC in an m4a file; returns what went wrong, or nothing.
///
/// A codec of overlapping blocks knows nothing of what comes before its first sample or after its last, and
/// is worst there. So the encoder is fed the loop as a circle: its own end before the beginning, its own
/// beginning after the end. The file keeps two packets from before the beginning for the decoder to start up
/// with; the edit list hides them and sets the length to the exact frame.
[[nodiscard]] std::optional<std::string> encodeLoop(const Pcm& pcm, const std::string& title,
                                                    const std::filesystem::path& file);

/// Keeps the encoding library's chatter to real errors, for the whole process.
void quietEncoder() noexcept;

} // namespace tonewright::loops

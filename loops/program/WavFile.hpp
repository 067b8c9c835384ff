// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes a loop's exact samples as a wav file of 32-bit floats, for tests, benchmarks and listening. Callable
// from any thread.
#pragma once

#include "loops/synth/Render.hpp"

#include <filesystem>
#include <optional>
#include <string>

namespace tonewright::loops {

/// Writes `pcm`; returns the reason why not, or no value on success.
[[nodiscard]] std::optional<std::string> writeWav(const Pcm& pcm, const std::filesystem::path& file);

} // namespace tonewright::loops

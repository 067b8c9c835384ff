// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How loud a loop is, by the weighting of ITU-R BS.1770 (a shelf for the head, a high-pass for the ear), and
// the limiter that keeps peaks in. Both treat the loop as a circle. Pure functions.
#pragma once

#include "StereoBuffer.hpp"

namespace tonewright::loops {

/// Returns the loudness of the whole loop in LUFS (not gated); a mono loop counts as played on both sides.
[[nodiscard]] double loudnessOf(const StereoBuffer& loop, double rate);

/// Returns the loudness in LUFS of those 50 ms stretches that are within 13 dB of the loudest.
[[nodiscard]] double loudnessWhileSounding(const StereoBuffer& loop, double rate);

/// Turns down around peaks above `ceiling` so that none is left, without an edge in the gain.
void limitPeaks(StereoBuffer& loop, double ceiling, double rate);

/// Evens the loop out: above `threshold` dB (RMS, 10 ms) the level rises only by 1 dB for every `ratio` dB.
void compress(StereoBuffer& loop, double threshold, double ratio, double rate);

} // namespace tonewright::loops

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The loudness of a loop with the weighting of ITU-R BS.1770 (a shelf for the head, a high-pass for the ear),
// a limiter and a compressor. All treat the loop as a circle. Pure functions.
#pragma once

#include "StereoBuffer.hpp"

namespace tonewright::loops {

/// Returns the loudness of the whole loop in LUFS, without gating; a mono loop counts as played on both
/// sides.
[[nodiscard]] double loudnessOf(const StereoBuffer& loop, double rate);

/// Returns the loudness in LUFS of the 50 ms segments that are within 13 dB of the loudest segment.
[[nodiscard]] double loudnessWhileSounding(const StereoBuffer& loop, double rate);

/// Reduces the gain smoothly around peaks until none exceeds `ceiling`.
void limitPeaks(StereoBuffer& loop, double ceiling, double rate);

/// Compresses the loop: above `threshold` dB (RMS over 10 ms), `ratio` dB of input raise the output by 1 dB.
void compress(StereoBuffer& loop, double threshold, double ratio, double rate);

} // namespace tonewright::loops

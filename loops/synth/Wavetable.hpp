// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Band-limited single cycles of the classic wave forms: sums of harmonics, three tables to the octave, so
// that no partial passes the given rate's limit (no aliasing) and none below two thirds of an octave under it
// is lost. The tables are built once, on first use, from exact arithmetic; reading them is safe from any
// thread.
#pragma once

#include <cstddef>
#include <vector>

namespace tonewright::loops {

enum class WaveShape { Sine, Triangle, Saw, Square };

/// One cycle ready for reading.
class WaveCycle {
  public:
    static constexpr std::size_t Size = 4096;

    explicit WaveCycle(std::vector<double> table);

    /// Reads at `phase` in [0, 1) with four-point interpolation.
    [[nodiscard]] double at(double phase) const noexcept {
        const double position = phase * static_cast<double>(Size);
        const auto index = static_cast<std::size_t>(position);
        const double part = position - static_cast<double>(index);
        const double* y = &_table[index];
        const double c1 = 0.5 * (y[2] - y[0]);
        const double c2 = y[0] - 2.5 * y[1] + 2.0 * y[2] - 0.5 * y[3];
        const double c3 = 0.5 * (y[3] - y[0]) + 1.5 * (y[1] - y[2]);
        return ((c3 * part + c2) * part + c1) * part + y[1];
    }

  private:
    std::vector<double> _table; // one frame before and three after the cycle, so that reading never wraps
};

/// Returns the cycle of `shape` with as many harmonics as stay below 0.45 times `rate` at `frequency` (both
/// Hz).
[[nodiscard]] const WaveCycle& waveCycle(WaveShape shape, double frequency, double rate);

} // namespace tonewright::loops

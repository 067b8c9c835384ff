// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Band-limited single cycles of the classic waveforms, as sums of harmonics. With three tables per octave, no
// partial aliases, and only partials within two thirds of an octave below the limit can be missing. The
// tables are computed on first use with exact arithmetic; reading them is safe from any thread.
#pragma once

#include <cstddef>
#include <vector>

namespace tonewright::loops {

enum class WaveShape { Sine, Triangle, Saw, Square };

/// One cycle of a waveform as a table.
class WaveCycle {
  public:
    static constexpr std::size_t Size = 4096;

    explicit WaveCycle(std::vector<double> table);

    /// Returns the value at `phase` in [0, 1), with four-point interpolation.
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
    std::vector<double> _table; // with padding, so that reading never wraps
};

/// Returns the cycle of `shape` with the most harmonics that stay below 0.45 times `rate` at `frequency`
/// (both in Hz).
[[nodiscard]] const WaveCycle& waveCycle(WaveShape shape, double frequency, double rate);

} // namespace tonewright::loops

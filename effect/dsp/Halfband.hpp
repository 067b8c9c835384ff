// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Linear-phase half-band filters in polyphase form: doubling and halving of the sample rate.
// Every second coefficient of a half-band filter is zero and the middle one is 1/2, so one of the
// two phases is a plain delay.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace tonewright::effect {

/// Returns the coefficients at even positions of a Kaiser-windowed half-band low pass with
/// 4 * K + 3 taps, normalised to 1/2. Design: windowed sinc; beta after Kaiser's formula.
template <int K>
[[nodiscard]] std::array<float, 2 * K + 2> halfbandCoefficients(double beta) noexcept {
    const auto bessel = [](double x) { // zeroth-order modified Bessel function, by its power series
        double sum = 1.;
        double term = 1.;
        for (int i = 1; i < 40; ++i) {
            term *= (x / (2. * i)) * (x / (2. * i));
            sum += term;
        }
        return sum;
    };
    constexpr int Centre = 2 * K + 1;
    std::array<double, 2 * K + 2> exact{};
    double sum = 0.;
    for (int i = 0; i < 2 * K + 2; ++i) {
        const double offset = 2 * i - Centre;
        const double ideal = std::sin(std::numbers::pi * offset / 2.) / (std::numbers::pi * offset);
        const double place = offset / (Centre + 1.);
        exact[static_cast<std::size_t>(i)] =
            ideal * bessel(beta * std::sqrt(1. - place * place)) / bessel(beta);
        sum += exact[static_cast<std::size_t>(i)];
    }
    std::array<float, 2 * K + 2> coefficients{};
    std::transform(exact.begin(), exact.end(), coefficients.begin(),
                   [sum](double c) { return static_cast<float>(c * 0.5 / sum); });
    return coefficients;
}

/// Keeps the last samples of a stream before the present ones. Max: the longest block.
template <int History, int Max>
class SampleHistory {
  public:
    void reset() noexcept { _samples.fill(0.F); }

    /// Appends n samples; `at(0)` is then the first of them, `at(-History)` the oldest kept.
    void push(const float* in, int n) noexcept { std::copy_n(in, n, _samples.data() + History); }

    [[nodiscard]] const float* at(int offset) const noexcept { return _samples.data() + History + offset; }

    /// Forgets all but the last History samples.
    void retire(int n) noexcept {
        std::copy(_samples.data() + n, _samples.data() + n + History, _samples.data());
    }

  private:
    std::array<float, static_cast<std::size_t>(History + Max)> _samples{};
};

/// Delays by a whole number of samples.
template <int Delay, int Max>
class FixedDelay {
  public:
    void reset() noexcept { _history.reset(); }

    void process(const float* in, float* out, int n) noexcept {
        _history.push(in, n);
        std::copy_n(_history.at(-Delay), n, out);
        _history.retire(n);
    }

  private:
    SampleHistory<Delay, Max> _history;
};

/// Convolves with the symmetric even-position coefficients.
template <int K, int Max>
void convolveSymmetric(const SampleHistory<2 * K + 1, Max>& history,
                       const std::array<float, 2 * K + 2>& coefficients, float gain, float* out,
                       int n) noexcept {
    constexpr int Last = 2 * K + 1;
    std::array<float, Max> sum{};
    for (int i = 0; i <= K; ++i) {
        const float c = coefficients[static_cast<std::size_t>(i)] * gain;
        const float* newer = history.at(-i);
        const float* older = history.at(i - Last);
        for (int j = 0; j < n; ++j) {
            sum[static_cast<std::size_t>(j)] += c * (newer[j] + older[j]);
        }
    }
    std::copy_n(sum.data(), n, out);
}

/// Doubles the rate; returns the two phases of the result. Max: the longest block of input.
template <int K, int Max>
class HalfbandUp {
  public:
    using Coefficients = std::array<float, 2 * K + 2>;

    void reset() noexcept { _history.reset(); }

    void process(const Coefficients& coefficients, const float* in, float* even, float* odd, int n) noexcept {
        _history.push(in, n);
        convolveSymmetric<K, Max>(_history, coefficients, 2.F, even, n);
        std::copy_n(_history.at(-K), n, odd);
        _history.retire(n);
    }

  private:
    SampleHistory<2 * K + 1, Max> _history;
};

/// Halves the rate of a stream given as its two phases. Max: the longest block of output.
template <int K, int Max>
class HalfbandDown {
  public:
    using Coefficients = std::array<float, 2 * K + 2>;

    void reset() noexcept {
        _even.reset();
        _odd.reset();
    }

    void process(const Coefficients& coefficients, const float* even, const float* odd, float* out,
                 int n) noexcept {
        _even.push(even, n);
        _odd.push(odd, n);
        convolveSymmetric<K, Max>(_even, coefficients, 1.F, out, n);
        const float* centre = _odd.at(-(K + 1));
        for (int j = 0; j < n; ++j) {
            out[j] += 0.5F * centre[j];
        }
        _even.retire(n);
        _odd.retire(n);
    }

  private:
    SampleHistory<2 * K + 1, Max> _even;
    SampleHistory<K + 1, Max> _odd;
};

} // namespace tonewright::effect

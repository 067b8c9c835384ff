// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Linear-phase half-band filters in polyphase form, which double and halve the sample rate. In a half-band
// filter, every second coefficient is zero except the middle one, which is 1/2. Therefore one of the two
// phases is a plain delay.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace tonewright::effect {

/// Returns the even coefficients of a half-band low pass with 4 * K + 3 taps, normalised to a sum of 1/2. The
/// filter is a sinc with a Kaiser window of parameter `beta`.
template <int K>
[[nodiscard]] std::array<float, 2 * K + 2> halfbandCoefficients(double beta) noexcept {
    const auto bessel = [](double x) { // modified Bessel function of order zero, by its power series
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

/// Stores a block of samples and the History samples before it. Max is the longest block.
template <int History, int Max>
class SampleHistory {
  public:
    void reset() noexcept { _samples.fill(0.F); }

    /// Appends n samples. `at(0)` is then the first of them, `at(-History)` the oldest stored sample.
    void push(const float* in, int n) noexcept { std::copy_n(in, n, _samples.data() + History); }

    [[nodiscard]] const float* at(int offset) const noexcept { return _samples.data() + History + offset; }

    /// Drops all samples except the last History ones.
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

/// Convolves the history with the even coefficients, which are symmetric.
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

/// Doubles the sample rate and writes the result as its two phases. Max is the longest input block.
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

/// Halves the sample rate of a stream that is given as its two phases. Max is the longest output block.
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

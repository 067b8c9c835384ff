// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Arithmetic with denormal numbers can be a hundred times slower. While the effect runs, the processor
// flushes them to zero; the caller's floating-point mode is restored afterwards.
#pragma once

#include <cmath>

#if defined(__SSE2__)
#include <immintrin.h>
#elif defined(__aarch64__)
#include <cstdint>
#endif

namespace tonewright::effect {

/// Sets flush-to-zero on the calling thread until the end of the scope.
class FlushDenormals {
  public:
    FlushDenormals() noexcept
        : _saved{read()} {
        write(_saved | FlushBits);
    }
    ~FlushDenormals() { write(_saved); }
    FlushDenormals(const FlushDenormals&) = delete;
    FlushDenormals& operator=(const FlushDenormals&) = delete;

  private:
#if defined(__SSE2__)
    using Word = unsigned;
    static constexpr Word FlushBits = 0x8040U; // flush-to-zero and denormals-are-zero
    static Word read() noexcept {
        return _mm_getcsr();
    }
    static void write(Word word) noexcept {
        _mm_setcsr(word);
    }
#elif defined(__aarch64__)
    using Word = std::uint64_t;
    static constexpr Word FlushBits = std::uint64_t{1} << 24U;
    static Word read() noexcept {
        Word word = 0;
        asm volatile("mrs %0, fpcr" : "=r"(word));
        return word;
    }
    static void write(Word word) noexcept {
        asm volatile("msr fpcr, %0" : : "r"(word));
    }
#else
    using Word = unsigned;
    static constexpr Word FlushBits = 0;
    static Word read() noexcept {
        return 0;
    }
    static void write(Word) noexcept {}
#endif
    Word _saved;
};

/// Returns 0 instead of inaudibly small values, for processors without flush-to-zero.
[[nodiscard]] inline float flushed(float value) noexcept {
    return std::abs(value) < 1e-18F ? 0.F : value;
}

} // namespace tonewright::effect

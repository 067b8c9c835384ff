// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Makes the processor treat denormal numbers as zero, on this thread until the end of the scope. Arithmetic
// with denormals, which occur in an effect's decaying tail, can be a hundred times slower.
#pragma once

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace platform {

class DenormalScope {
  public:
#if defined(__SSE__)
    DenormalScope() noexcept
        : _before(_mm_getcsr()) {
        _mm_setcsr(_before | 0x8040U); // flush to zero, denormals are zero
    }
    ~DenormalScope() {
        _mm_setcsr(_before);
    }
#elif defined(__aarch64__)
    DenormalScope() noexcept {
        asm volatile("mrs %0, fpcr" : "=r"(_before));
        asm volatile("msr fpcr, %0" : : "r"(_before | (1UL << 24U))); // flush to zero
    }
    ~DenormalScope() {
        asm volatile("msr fpcr, %0" : : "r"(_before));
    }
#else
    DenormalScope() noexcept {}
    ~DenormalScope() {
    } // NOLINT(modernize-use-equals-default): not trivial, so that an unused scope is not a warning
#endif
    DenormalScope(const DenormalScope&) = delete;
    DenormalScope& operator=(const DenormalScope&) = delete;

#if defined(__SSE__)
  private:
    unsigned _before;
#elif defined(__aarch64__)
  private:
    unsigned long _before;
#endif
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Denormal numbers cost an effect's decaying tail a hundred times the work of others: on this thread, for the
// length of the scope, they count as zero.
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
    ~DenormalScope() {} // NOLINT(modernize-use-equals-default): an unused scope is no warning
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

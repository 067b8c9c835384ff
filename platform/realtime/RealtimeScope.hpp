// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Marks code that must run in real time, for RealtimeSanitizer (`cmake --preset rtsan`). Does nothing in
// other builds.
#pragma once

#ifdef TONEWRIGHT_RTSAN
extern "C" void __rtsan_realtime_enter();
extern "C" void __rtsan_realtime_exit();
extern "C" void __rtsan_off();
extern "C" void __rtsan_on();
#endif

namespace platform {

/// Makes every allocation, lock and blocking call on this thread an error until the end of the scope.
class RealtimeScope {
  public:
#ifdef TONEWRIGHT_RTSAN
    RealtimeScope() noexcept {
        __rtsan_realtime_enter();
    }
    ~RealtimeScope() {
        __rtsan_realtime_exit();
    }
#else
    RealtimeScope() noexcept {} // not trivial, so that an unused scope is not a warning
    ~RealtimeScope() {}         // NOLINT(modernize-use-equals-default): as above
#endif
    RealtimeScope(const RealtimeScope&) = delete;
    RealtimeScope& operator=(const RealtimeScope&) = delete;
};

/// Disables the detector until the end of the scope, inside a RealtimeScope. Used around a plug-in's code,
/// which this program does not control, and around the one call that wakes another thread.
class ForeignCodeScope {
  public:
#ifdef TONEWRIGHT_RTSAN
    ForeignCodeScope() noexcept {
        __rtsan_off();
    }
    ~ForeignCodeScope() {
        __rtsan_on();
    }
#else
    ForeignCodeScope() noexcept {}
    ~ForeignCodeScope() {} // NOLINT(modernize-use-equals-default): as above
#endif
    ForeignCodeScope(const ForeignCodeScope&) = delete;
    ForeignCodeScope& operator=(const ForeignCodeScope&) = delete;
};

} // namespace platform

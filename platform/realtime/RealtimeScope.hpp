// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Marks the part of a thread's work that is bound to real time, for RealtimeSanitizer (`cmake --preset
// rtsan`). In other builds it does nothing.
#pragma once

#ifdef TONEWRIGHT_RTSAN
extern "C" void __rtsan_realtime_enter();
extern "C" void __rtsan_realtime_exit();
extern "C" void __rtsan_off();
extern "C" void __rtsan_on();
#endif

namespace platform {

/// From construction to destruction, on this thread, an allocation, a lock or a blocking call is an error.
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

/// Inside a RealtimeScope: from construction to destruction the detector is disabled. For other people's code
/// (a plug-in whose author decides what it does) and for the one call that wakes another thread.
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

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The event loop of a thread. Timers fire in it, and the main thread's loop also runs the main queue. In the
// application GTK runs the main thread's loop; tests, tools and threads without GTK run theirs through this
// class.
#pragma once

#include <functional>

namespace platform {

class RunLoop {
  public:
    /// Returns the calling thread's loop.
    [[nodiscard]] static RunLoop current();

    /// Runs the loop until `done` returns true or `timeoutSeconds` (may be infinite) have passed. `done` is
    /// called once at the start and after each iteration. Returns the last result of `done`. Must be called
    /// on the loop's own thread.
    bool runUntil(const std::function<bool()>& done, double timeoutSeconds);
    /// Runs the loop for `seconds`.
    void runFor(double seconds);
    /// Makes a waiting `runUntil` call `done` again. Any thread.
    void wakeUp();

    /// The loop's GLib main context.
    struct Handle;
    [[nodiscard]] Handle* handle() const noexcept { return _handle; }

  private:
    explicit RunLoop(Handle* handle) noexcept
        : _handle(handle) {}
    Handle* _handle; // lives as long as its thread
};

/// Returns whether the calling thread is the main thread.
[[nodiscard]] bool isMainThread() noexcept;

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The loop of a thread: timers fire in it, and the main thread's also runs the main queue.
// The toolkit runs the main thread's loop in the application; tests, tools and plain threads run it here.
#pragma once

#include <functional>

namespace platform {

class RunLoop {
  public:
    /// Returns the calling thread's loop; the main thread's is the one that runs the main queue.
    [[nodiscard]] static RunLoop current();

    /// Runs until `done` returns true after a turn or `timeoutSeconds` have passed (infinity allowed);
    /// returns whether it returned true. Must be called on the loop's own thread.
    bool runUntil(const std::function<bool()>& done, double timeoutSeconds);
    /// Runs for `seconds`.
    void runFor(double seconds);
    /// Makes a waiting loop check its condition again. Any thread.
    void wakeUp();

    /// The handle of the loop in the underlying library.
    struct Handle;
    [[nodiscard]] Handle* handle() const noexcept { return _handle; }

  private:
    explicit RunLoop(Handle* handle) noexcept
        : _handle(handle) {}
    Handle* _handle; // lives as long as its thread
};

/// Returns whether the calling thread is the main one.
[[nodiscard]] bool isMainThread() noexcept;

} // namespace platform

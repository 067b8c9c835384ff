// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The thread that creates, activates, configures, saves, restores and destroys the instances of a library's
// plug-ins. LV2 lets the host choose the thread, but some plug-ins have objects that must be destroyed on the
// thread that created them, such as the application object of a widget toolkit. The plug-ins of a library
// share such objects, so they share a thread.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace platform::lv2 {

class PluginThread {
  public:
    enum class Progress { Queued, Running, Ended };
    struct Call {
        std::function<void()> task;
        std::atomic<Progress> progress{Progress::Queued}; // set by the plug-in thread, read by any thread
    };

    /// Returns the thread for the plug-ins of the library at this path. Like the library, the thread exists
    /// until the process exits. If a call on the thread is stuck, returns a new thread instead. All
    /// operations may be called on any thread except the audio thread.
    [[nodiscard]] static std::shared_ptr<PluginThread> of(const std::string& libraryPath);

    PluginThread() = default;
    PluginThread(const PluginThread&) = delete;
    PluginThread& operator=(const PluginThread&) = delete;

    /// Runs `task` on the thread, after the tasks posted before. `task` may never return, so it must own
    /// everything that it uses. Its captures are released on the thread before the call counts as ended.
    std::shared_ptr<const Call> post(std::function<void()> task);
    /// Waits until the call has ended, at most until `end`, and returns the progress of the call. If the call
    /// has not ended, the thread counts as stuck until the call in progress returns.
    Progress waitFor(const Call& call, std::chrono::steady_clock::time_point end);
    [[nodiscard]] bool isStuck() const;

  private:
    void serve();

    mutable std::mutex _mutex; // guards the following members; never held during a call
    std::condition_variable _changed;
    std::deque<std::shared_ptr<Call>> _calls;
    bool _isStuck = false;
};

} // namespace platform::lv2

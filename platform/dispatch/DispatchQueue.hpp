// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Queues of tasks: the main queue (run by the main thread's loop), the global queue (a thread pool), and
// serial queues (each with its own thread). All operations may be called on any thread except the audio
// thread, because they lock a mutex and may wake a thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

using Task = std::function<void()>;

class DispatchQueue {
  public:
    /// Returns the main queue. The main thread's loop runs its tasks in the order of submission, never inside
    /// the submitting call. Tasks that are still queued when the loop ends for good are dropped.
    [[nodiscard]] static DispatchQueue& main();
    /// Returns the global queue, whose tasks run concurrently on a thread pool.
    [[nodiscard]] static DispatchQueue& global();

    /// Creates a serial queue. Its tasks run one at a time, in the order of submission. Destroying the queue
    /// neither waits for tasks nor drops them: tasks already submitted still run. A task of the queue may
    /// destroy it.
    explicit DispatchQueue(std::string label);
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    /// Submits `task` and returns immediately.
    void async(Task task);
    /// Runs `task` on the calling thread after the tasks already submitted to this queue, and returns when
    /// `task` has run. Serial queues only. Calling `sync` from a task of the same queue is fatal, because the
    /// call could never return.
    void sync(const Task& task);
    /// Submits `task` after `seconds` of steady-clock time; immediately if `seconds` is 0 or less.
    void asyncAfter(double seconds, Task task);

    [[nodiscard]] const std::string& label() const noexcept;

    class Implementation;

  private:
    explicit DispatchQueue(std::shared_ptr<Implementation> implementation);
    std::shared_ptr<Implementation> _implementation;
};

} // namespace platform

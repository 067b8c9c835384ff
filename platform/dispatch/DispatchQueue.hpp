// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Queues of tasks: the main queue (run by the main thread's loop), the global queue (a pool of threads), and
// serial queues (each a thread with a list of tasks). All operations may be called on any thread except the
// audio thread: they lock and may wake a thread.
#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform {

using Task = std::function<void()>;

class DispatchQueue {
  public:
    /// Returns the queue whose tasks the main thread's loop runs, in the order of submission. Tasks never run
    /// inside the submitting call; those still queued when the loop ends for good are dropped.
    [[nodiscard]] static DispatchQueue& main();
    /// Returns the queue of default quality of service whose tasks run concurrently on a pool of threads.
    [[nodiscard]] static DispatchQueue& global();

    /// Creates a serial queue. Its tasks run one at a time, in the order of submission. Releasing the queue
    /// neither waits for tasks nor drops them: tasks already submitted still run. May be released on its own
    /// thread.
    explicit DispatchQueue(std::string label);
    ~DispatchQueue();
    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;

    /// Submits `task` and return at once.
    void async(Task task);
    /// Runs `task` on the calling thread as this queue's task, after those already submitted, and returns
    /// when it has run. Serial queues only. Calling it from a task of the same queue is fatal, because it
    /// could never return.
    void sync(const Task& task);
    /// Submits `task` after `seconds` (clock time, 0 or less: now).
    void asyncAfter(double seconds, Task task);

    [[nodiscard]] const std::string& label() const noexcept;

    class Implementation;

  private:
    explicit DispatchQueue(std::shared_ptr<Implementation> implementation);
    std::shared_ptr<Implementation> _implementation;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The global queue: a GLib thread pool, which starts threads as tasks arrive and ends idle threads.
#include "platform/dispatch/detail/QueueImplementation.hpp"
#include "platform/foundation/fatal.hpp"

#include <deque>
#include <glib.h>
#include <mutex>

namespace platform {
namespace {

// Tasks may block on the disk or on a plug-in's files, so there are more threads than cores.
constexpr int MostThreads = 32;

class GlobalQueue final : public DispatchQueue::Implementation {
  public:
    GlobalQueue()
        : Implementation("global")
        , _pool(g_thread_pool_new(runTask, nullptr, MostThreads, FALSE, nullptr)) {}

    void async(Task task) override {
        {
            const std::scoped_lock lock(_mutex);
            _tasks.push_back(std::move(task));
        }
        g_thread_pool_push(_pool, this, nullptr); // one pool entry for each task
    }

    void sync(const Task&) override { fatal("DispatchQueue.sync is for serial queues"); }

  private:
    static void runTask(gpointer data, gpointer) { static_cast<GlobalQueue*>(data)->runNext(); }

    void runNext() {
        Task task;
        {
            const std::scoped_lock lock(_mutex);
            task = std::move(_tasks.front());
            _tasks.pop_front();
        }
        task();
    }

    // Tasks are handed over under this class's own mutex, because ThreadSanitizer does not see GLib's locks.
    std::mutex _mutex;
    std::deque<Task> _tasks; // guarded by _mutex
    GThreadPool* _pool;      // lives as long as the process
};

} // namespace

std::shared_ptr<DispatchQueue::Implementation> makeGlobalQueue() {
    return std::make_shared<GlobalQueue>();
}

} // namespace platform

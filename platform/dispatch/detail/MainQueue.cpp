// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The main queue: an event source of the main thread's loop that runs the submitted tasks in order.
#include "platform/dispatch/detail/QueueImplementation.hpp"
#include "platform/dispatch/detail/loopContext.hpp"
#include "platform/foundation/fatal.hpp"

#include <chrono>
#include <deque>
#include <glib.h>
#include <mutex>

namespace platform {
namespace {

// A loop iteration starts no further task after this time, so that a burst of tasks leaves time for drawing.
constexpr auto LongestTurn = std::chrono::milliseconds(8);

class MainQueue final : public DispatchQueue::Implementation {
  public:
    MainQueue()
        : Implementation("main") {
        static GSourceFuncs functions = {prepare, check, dispatch, nullptr, nullptr, nullptr};
        GSource* source = g_source_new(&functions, sizeof(Source));
        reinterpret_cast<Source*>(source)->queue = this;
        g_source_set_name(source, "main queue");
        g_source_attach(source, nullptr);
        g_source_unref(source); // the default context keeps a reference for the life of the process
    }

    void async(Task task) override {
        bool wasEmpty = false;
        {
            const std::scoped_lock lock(_mutex);
            wasEmpty = _tasks.empty();
            _tasks.push_back(std::move(task));
        }
        if (wasEmpty) g_main_context_wakeup(nullptr);
    }

    void sync(const Task&) override { fatal("DispatchQueue.sync is for serial queues"); }

  private:
    struct Source {
        GSource base;
        MainQueue* queue;
    };

    static MainQueue& of(GSource* source) { return *reinterpret_cast<Source*>(source)->queue; }
    static gboolean prepare(GSource* source, gint* timeout) {
        *timeout = -1;
        return of(source).hasTasks() ? TRUE : FALSE;
    }
    static gboolean check(GSource* source) { return of(source).hasTasks() ? TRUE : FALSE; }
    static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
        of(source).runTasks();
        setTurnPriority(source, of(source).hasTasks());
        return G_SOURCE_CONTINUE;
    }

    bool hasTasks() {
        const std::scoped_lock lock(_mutex);
        return !_tasks.empty();
    }

    // Runs the tasks queued at the time of the call; tasks that they submit run in a later iteration. A
    // nested loop inside a task does not dispatch this source, so nothing else removes tasks from the queue.
    void runTasks() {
        const auto end = std::chrono::steady_clock::now() + LongestTurn;
        std::size_t count = 0;
        {
            const std::scoped_lock lock(_mutex);
            count = _tasks.size();
        }
        for (; count > 0; --count) {
            Task task;
            {
                const std::scoped_lock lock(_mutex);
                task = std::move(_tasks.front());
                _tasks.pop_front();
            }
            task();
            if (std::chrono::steady_clock::now() >= end) return;
        }
    }

    std::mutex _mutex;
    std::deque<Task> _tasks; // guarded by _mutex
};

} // namespace

std::shared_ptr<DispatchQueue::Implementation> makeMainQueue() {
    return std::make_shared<MainQueue>();
}

} // namespace platform

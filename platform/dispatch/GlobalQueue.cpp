// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The global queue: GLib's thread pool, which starts threads as tasks come and lets idle ones go.
#include "platform/dispatch/DispatchQueue.private.hpp"
#include "platform/foundation/fatal.hpp"

#include <glib.h>

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
        g_thread_pool_push(_pool, std::make_unique<Task>(std::move(task)).release(), nullptr);
    }

    void sync(const Task&) override { fatal("DispatchQueue.sync is for serial queues"); }

  private:
    static void runTask(gpointer data, gpointer) {
        const std::unique_ptr<Task> task(static_cast<Task*>(data));
        (*task)();
    }

    GThreadPool* _pool; // lives as long as the process
};

} // namespace

std::shared_ptr<DispatchQueue::Implementation> makeGlobalQueue() {
    return std::make_shared<GlobalQueue>();
}

} // namespace platform

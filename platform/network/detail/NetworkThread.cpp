// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/network/detail/NetworkThread.hpp"

#include <glib.h>
#include <thread>

namespace platform {

NetworkThread& NetworkThread::shared() {
    static auto* thread = new NetworkThread; // never destroyed
    return *thread;
}

NetworkThread::NetworkThread()
    : _context(g_main_context_new()) {
    std::thread([context = _context] {
        g_main_context_push_thread_default(context);
        while (true) g_main_context_iteration(context, TRUE);
    }).detach();
}

void NetworkThread::run(std::function<void()> work) {
    {
        const std::scoped_lock lock(_mutex);
        _work.push_back(std::move(work));
    }
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
            static_cast<NetworkThread*>(data)->runNext();
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(source, _context);
    g_source_unref(source);
}

void NetworkThread::runNext() {
    std::function<void()> work;
    {
        const std::scoped_lock lock(_mutex);
        work = std::move(_work.front());
        _work.pop_front();
    }
    work();
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/network/NetworkThread.private.hpp"

#include <glib.h>
#include <memory>
#include <thread>

namespace platform {

NetworkThread& NetworkThread::shared() {
    static auto* thread = new NetworkThread; // outlives every static
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
    using Work = std::function<void()>;
    GSource* source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
            (*static_cast<Work*>(data))();
            return G_SOURCE_REMOVE;
        },
        new Work(std::move(work)), [](gpointer data) { delete static_cast<Work*>(data); });
    g_source_attach(source, _context);
    g_source_unref(source);
}

} // namespace platform

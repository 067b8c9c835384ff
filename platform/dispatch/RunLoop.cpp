// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/dispatch/detail/loopContext.hpp"

#include <chrono>
#include <cmath>
#include <memory>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {
namespace {

struct ContextRelease {
    void operator()(GMainContext* context) const noexcept { g_main_context_unref(context); }
};

GMainContext* contextOfThisThread() {
    if (isMainThread()) return g_main_context_default();
    thread_local const std::unique_ptr<GMainContext, ContextRelease> own(g_main_context_new());
    return own.get();
}

} // namespace

bool isMainThread() noexcept {
    thread_local const bool isMain = ::syscall(SYS_gettid) == ::getpid();
    return isMain;
}

RunLoop RunLoop::current() {
    if (isMainThread()) (void)DispatchQueue::main(); // attaches the main queue to the loop
    return RunLoop(reinterpret_cast<Handle*>(contextOfThisThread()));
}

bool RunLoop::runUntil(const std::function<bool()>& done, double timeoutSeconds) {
    using Clock = std::chrono::steady_clock;
    GMainContext* context = contextOf(*this);
    const bool hasEnd = std::isfinite(timeoutSeconds);
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                        std::chrono::duration<double>(hasEnd ? timeoutSeconds : 0));
    // This source only ends the wait. An idle loop without it would sleep past the time limit.
    GSource* alarm = nullptr;
    if (hasEnd) {
        alarm = g_timeout_source_new(0);
        g_source_set_callback(
            alarm, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
        g_source_set_ready_time(alarm, g_get_monotonic_time() +
                                           static_cast<gint64>(std::fmax(0, timeoutSeconds) * 1e6));
        g_source_attach(alarm, context);
    }
    bool answered = done();
    while (!answered && (!hasEnd || Clock::now() < end)) {
        g_main_context_iteration(context, TRUE);
        answered = done();
    }
    if (alarm != nullptr) {
        g_source_destroy(alarm);
        g_source_unref(alarm);
    }
    return answered;
}

void RunLoop::runFor(double seconds) {
    runUntil([] { return false; }, seconds);
}

void RunLoop::wakeUp() {
    g_main_context_wakeup(contextOf(*this));
}

} // namespace platform

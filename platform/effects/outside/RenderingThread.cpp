// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/outside/RenderingThread.hpp"

#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace platform::lv2 {
namespace {

// Some seconds of sound.
constexpr std::uint32_t BlocksBetweenLooks = 1024;

pid_t callingThread() noexcept {
    thread_local pid_t thread = 0;
    if (thread == 0) thread = ::gettid();
    return thread;
}

bool isOfThisProcess(pid_t thread) noexcept {
    return ::syscall(SYS_tgkill, ::getpid(), thread, 0) == 0;
}

int realtimePriorityOf(pid_t thread) noexcept {
    const int policy = ::sched_getscheduler(thread);
    sched_param parameter{};
    if (policy < 0 || ::sched_getparam(thread, &parameter) != 0) return 0;
    const int kind = policy & ~SCHED_RESET_ON_FORK;
    return kind == SCHED_FIFO || kind == SCHED_RR ? parameter.sched_priority : 0;
}

} // namespace

bool RenderingThread::note() noexcept {
    const pid_t thread = callingThread();
    _processor.store(::sched_getcpu(), std::memory_order_relaxed);
    const bool isNew = thread != _thread.load(std::memory_order_relaxed);
    if (isNew) {
        _isKept = false;
        _thread = thread;
    }
    return isNew || ++_blocks % BlocksBetweenLooks == 0;
}

Placement RenderingThread::placement() const noexcept {
    Placement placement;
    if (!_isKept.load(std::memory_order_relaxed)) return placement;
    placement.processor = _processor.load(std::memory_order_relaxed);
    placement.priority = _priority.load(std::memory_order_relaxed);
    return placement;
}

void RenderingThread::follow() noexcept {
    const std::scoped_lock lock(_mutex);
    const pid_t thread = _thread;
    if (thread != _kept) restore();
    if (thread == 0 || !isOfThisProcess(thread)) return;
    // One below, so that an effect that loops cannot keep the thread from noticing that the time is over.
    const int priority = realtimePriorityOf(thread) - 1;
    if (priority < 1) return restore();
    _priority = priority;
    cpu_set_t allowed;
    if (::sched_getaffinity(thread, sizeof allowed, &allowed) != 0) return;
    if (CPU_COUNT(&allowed) > 1) { // not kept yet, or somebody else has changed that
        const int processor = _processor;
        if (processor < 0 || processor >= CPU_SETSIZE) return;
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(static_cast<std::size_t>(processor), &one);
        if (::sched_setaffinity(thread, sizeof one, &one) != 0) return;
        _former = allowed;
        _kept = thread;
    }
    _isKept = thread == _thread;
}

void RenderingThread::letGo() noexcept {
    const std::scoped_lock lock(_mutex);
    restore();
    _thread = 0;
}

// _mutex is held.
void RenderingThread::restore() noexcept {
    _isKept = false;
    const pid_t thread = std::exchange(_kept, 0);
    if (thread != 0 && isOfThisProcess(thread)) ::sched_setaffinity(thread, sizeof _former, &_former);
}

} // namespace platform::lv2

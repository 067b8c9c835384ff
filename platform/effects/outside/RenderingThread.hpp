// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The thread that renders in real time and waits for an effect's process in each block. If it has real-time
// priority, it is kept on the processor on which it is, so that the effect's thread can run there as well:
// the kernel would otherwise wake it on another processor each time the effect's thread gives the turn back,
// and to wake a thread on another processor takes several times as long. Without real-time priority the
// kernel places both threads, because one that cannot leave a busy processor is late more often.
#pragma once

#include "platform/effects/process/BlockMemory.hpp"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <sched.h>
#include <sys/types.h>

namespace platform::lv2 {

class RenderingThread {
  public:
    RenderingThread() = default;
    ~RenderingThread() { letGo(); }
    RenderingThread(const RenderingThread&) = delete;
    RenderingThread& operator=(const RenderingThread&) = delete;

    /// Notes that the calling thread renders a block. Returns whether the control side has to call `follow`:
    /// for a new thread, and now and then, because a thread may get its priority later. Makes a system call
    /// for a new thread. Audio side.
    [[nodiscard]] bool note() noexcept;
    /// Returns where and how the effect's thread has to run. Audio side.
    [[nodiscard]] Placement placement() const noexcept;

    /// Looks at the thread's priority, and keeps it on its processor if it has real-time priority. Control
    /// side.
    void follow() noexcept;
    /// Lets the thread run on all processors again. Control side; nothing renders.
    void letGo() noexcept;

  private:
    void restore() noexcept;

    // Shared between threads. Written by the audio side, except that `letGo` forgets the thread.
    std::atomic<pid_t> _thread{0};
    std::atomic<int> _processor{-1}; // the one on which the thread is
    // Written by the control side.
    std::atomic<int> _priority{0}; // for the effect's thread; 0: none
    std::atomic<bool> _isKept{false};

    std::uint32_t _blocks = 0; // audio side only

    std::mutex _mutex; // control side; guards the following members
    pid_t _kept = 0;   // the thread that is kept on one processor; 0: none
    cpu_set_t _former{};
};

} // namespace platform::lv2

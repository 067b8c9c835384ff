// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keeps a thread that renders offline on one processor while it takes turns with an effect's process, which
// is then on the same processor: the kernel would otherwise wake the thread on another one after every block.
#pragma once

namespace platform {

class ProcessorHold {
  public:
    /// A scope in which `take` works on the calling thread. The thread may run on any of its processors again
    /// when the outermost scope ends.
    ProcessorHold() noexcept;
    ~ProcessorHold();
    ProcessorHold(const ProcessorHold&) = delete;
    ProcessorHold& operator=(const ProcessorHold&) = delete;

    /// Keeps the calling thread on the processor on which it is, and returns that processor; -1 outside of a
    /// scope, or if the kernel refuses. The first call in a scope makes system calls. Not for a thread that
    /// must be in time: the kernel may wait for memory.
    static int take() noexcept;
};

} // namespace platform

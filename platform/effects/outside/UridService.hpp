// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Answers what the effects' processes ask about URIDs, on one thread for all of them, so that a thread that
// waits for a process never keeps it from an answer. A process that asks for too much gets none.
#pragma once

#include "platform/foundation/Descriptor.hpp"

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace platform::lv2 {

class UridService {
  public:
    /// Returns the service of this process, which ends with the last reference. Any thread.
    [[nodiscard]] static std::shared_ptr<UridService> shared();
    UridService();
    ~UridService();
    UridService(const UridService&) = delete;
    UridService& operator=(const UridService&) = delete;

    /// Returns a socket for one process. It is served until the other side has closed it. Any thread.
    [[nodiscard]] Descriptor connect();

  private:
    void run();

    std::mutex _mutex;
    std::vector<Descriptor> _arrived; // guarded by _mutex; taken over by the thread
    std::atomic<bool> _isEnding{false};
    Descriptor _news; // an event counter, which wakes the thread
    std::thread _thread;
};

} // namespace platform::lv2

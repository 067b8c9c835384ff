// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Lets the control side keep a plug-in from running for a moment: the audio side passes or turns away, it
// never waits.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace platform {

class RunGate {
  public:
    /// Enters unless the other side is inside. Both sides.
    [[nodiscard]] bool tryEnter() noexcept { return !_isTaken.exchange(true, std::memory_order_acquire); }
    void leave() noexcept { _isTaken.store(false, std::memory_order_release); }

    /// Waits until the audio side is outside, then keeps it there until the scope ends. Control side.
    class Closed {
      public:
        explicit Closed(RunGate& gate)
            : _gate(gate) {
            while (!_gate.tryEnter()) std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
        ~Closed() { _gate.leave(); }
        Closed(const Closed&) = delete;
        Closed& operator=(const Closed&) = delete;

      private:
        RunGate& _gate;
    };

  private:
    std::atomic<bool> _isTaken{false};
};

} // namespace platform

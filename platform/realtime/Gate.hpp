// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A passage that one audio thread goes through without ever waiting and that the control side can close.
// Behind a closed gate the control side owns what the audio thread otherwise uses.
//
// Crosses threads: both flags. The audio side sets its own and then looks at the other's, the control side
// does the same the other way round; sequential consistency makes one of them see the other.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace platform {

class Gate {
  public:
    /// Go in if the gate is open; then `leave` must follow. Audio thread.
    [[nodiscard]] bool enter() noexcept {
        _inside.store(true);
        if (_open.load()) return true;
        _inside.store(false);
        return false;
    }
    void leave() noexcept { _inside.store(false); }

    /// Lets the audio thread in. Control side.
    void open() noexcept { _open.store(true); }
    /// Lets it in no more and waits until it is out: at most the length of one block's work. Control side.
    void close() noexcept {
        _open.store(false);
        while (_inside.load()) std::this_thread::sleep_for(std::chrono::microseconds(50));
    }

  private:
    std::atomic<bool> _open{false};
    std::atomic<bool> _inside{false};
};

} // namespace platform

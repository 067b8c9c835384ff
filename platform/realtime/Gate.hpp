// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A passage that an audio thread takes without ever waiting and that the control side can close. While it is
// closed and empty, the control side owns what the audio side uses inside.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace platform {

/// The longest time that the control side waits for another thread before it continues without it and reports
/// that.
inline constexpr std::chrono::seconds ControlLimit{2};

/// Crosses threads: one word. The audio side enters by exchanging `open and empty` for `open and taken`, so
/// that one thread at a time is inside, and whoever closes the gate sees it there.
class Gate {
  public:
    /// The stay inside, from `enter` to the end of the scope.
    class Passage {
      public:
        explicit Passage(Gate& gate) noexcept
            : _gate(gate.tryEnter() ? &gate : nullptr) {}
        ~Passage() {
            if (_gate != nullptr) _gate->_state.fetch_and(~Taken, std::memory_order_release);
        }
        Passage(const Passage&) = delete;
        Passage& operator=(const Passage&) = delete;
        /// Returns whether the thread is inside.
        explicit operator bool() const noexcept { return _gate != nullptr; }

      private:
        Gate* const _gate;
    };
    /// Closes the gate until the end of the scope, then opens it. Control side, one at a time.
    class Closure {
      public:
        explicit Closure(Gate& gate) noexcept
            : _gate(gate)
            , _isEmpty(gate.close()) {}
        ~Closure() { _gate.open(); }
        Closure(const Closure&) = delete;
        Closure& operator=(const Closure&) = delete;
        /// Returns whether nobody is inside; otherwise the time limit has passed.
        explicit operator bool() const noexcept { return _isEmpty; }

      private:
        Gate& _gate;
        const bool _isEmpty;
    };

    /// Enters if the gate is open and nobody is inside. Audio side.
    [[nodiscard]] Passage enter() noexcept { return Passage(*this); }

    /// Lets the audio side in. Control side.
    void open() noexcept { _state.fetch_and(~Closed, std::memory_order_release); }
    /// Lets nobody in any more, without waiting. Any thread.
    void shut() noexcept { _state.fetch_or(Closed); }
    /// Shuts the gate and waits until nobody is inside; false if `limit` passes first. Control side.
    [[nodiscard]] bool close(std::chrono::nanoseconds limit = ControlLimit) noexcept {
        shut();
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!isEmpty()) {
            if (std::chrono::steady_clock::now() >= end) return false;
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
        return true;
    }
    /// Returns whether the audio side is let in. Any thread.
    [[nodiscard]] bool isOpen() const noexcept {
        return (_state.load(std::memory_order_acquire) & Closed) == 0;
    }
    /// Returns whether nobody is inside. Any thread.
    [[nodiscard]] bool isEmpty() const noexcept {
        return (_state.load(std::memory_order_acquire) & Taken) == 0;
    }

  private:
    static constexpr unsigned Closed = 1U;
    static constexpr unsigned Taken = 2U;

    [[nodiscard]] bool tryEnter() noexcept {
        unsigned expected = 0;
        return _state.compare_exchange_strong(expected, Taken, std::memory_order_acquire,
                                              std::memory_order_relaxed);
    }

    std::atomic<unsigned> _state{Closed};
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A gate around data that the audio thread uses. The audio thread enters it without ever waiting, and the
// control side can close it. While the gate is closed and nobody is inside, the data belongs to the control
// side.
#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace platform {

/// The longest time that the control side waits for another thread. It then reports the failure and
/// continues.
inline constexpr std::chrono::seconds ControlLimit{2};

/// Shared between threads: two atomic flags. The audio side marks the gate as taken and then reads whether it
/// is closed; the control side closes the gate and then reads whether it is taken. At least one of them
/// therefore sees the other's write. The mark admits one thread at a time.
class Gate {
  public:
    /// Keeps the audio thread inside from `enter` to the end of the scope.
    class Passage {
      public:
        explicit Passage(Gate& gate) noexcept
            : _gate(gate.tryEnter() ? &gate : nullptr) {}
        ~Passage() {
            if (_gate != nullptr) _gate->_isTaken.store(false, std::memory_order_release);
        }
        Passage(const Passage&) = delete;
        Passage& operator=(const Passage&) = delete;
        /// Returns whether the thread is inside.
        explicit operator bool() const noexcept { return _gate != nullptr; }

      private:
        Gate* const _gate;
    };
    /// Keeps the gate closed until the end of the scope. Control side, one at a time.
    class Closure {
      public:
        explicit Closure(Gate& gate) noexcept
            : _gate(gate)
            , _isEmpty(gate.close()) {}
        ~Closure() { _gate.open(); }
        Closure(const Closure&) = delete;
        Closure& operator=(const Closure&) = delete;
        /// Returns whether the gate is empty; false if the time limit passed before the other thread left.
        explicit operator bool() const noexcept { return _isEmpty; }

      private:
        Gate& _gate;
        const bool _isEmpty;
    };

    /// Enters if the gate is open and nobody is inside. Audio side.
    [[nodiscard]] Passage enter() noexcept { return Passage(*this); }

    /// Opens the gate. Control side.
    void open() noexcept { _isClosed.store(false, std::memory_order_release); }
    /// Closes the gate and returns at once. Any thread.
    void shut() noexcept { _isClosed.store(true); }
    /// Closes the gate and waits until nobody is inside. Returns false if `limit` passes first. Control side.
    [[nodiscard]] bool close(std::chrono::nanoseconds limit = ControlLimit) noexcept {
        shut();
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!isEmpty()) {
            if (std::chrono::steady_clock::now() >= end) return false;
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
        return true;
    }
    /// Returns whether the gate is open. Any thread.
    [[nodiscard]] bool isOpen() const noexcept { return !_isClosed.load(std::memory_order_acquire); }
    /// Returns whether nobody is inside. Any thread.
    [[nodiscard]] bool isEmpty() const noexcept { return !_isTaken.load(); }

  private:
    [[nodiscard]] bool tryEnter() noexcept {
        if (_isTaken.exchange(true)) return false;
        if (!_isClosed.load()) return true;
        _isTaken.store(false, std::memory_order_release);
        return false;
    }

    std::atomic<bool> _isClosed{true};
    std::atomic<bool> _isTaken{false};
};

} // namespace platform

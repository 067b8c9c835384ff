// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The host's side of the LV2 worker extension: a thread for a plug-in's work that is not allowed on the audio
// thread, such as loading files. Requests and responses are passed through lock-free rings.
#pragma once

#include "platform/realtime/ByteRing.hpp"
#include "platform/realtime/WakeSignal.hpp"

#include <lv2/worker/worker.h>
#include <mutex>
#include <thread>

namespace platform::lv2 {

class Worker {
  public:
    Worker();
    ~Worker() { stop(); }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Returns the feature for the plug-in's `instantiate`. Requests are carried out when the worker has been
    /// started. The feature may be called only on the thread that runs the plug-in.
    [[nodiscard]] LV2_Worker_Schedule* schedule() noexcept { return &_schedule; }
    /// Returns the feature for restoring state, which carries out the work inside the call. Control side.
    [[nodiscard]] LV2_Worker_Schedule* scheduleForRestore() noexcept { return &_scheduleForRestore; }

    /// Starts serving the plug-in `handle`; does nothing if `interface` is null. Must be called once only.
    /// Control side.
    void start(LV2_Handle handle, const LV2_Worker_Interface* interface);
    /// Finishes the work in progress, drops all other requests and ends the thread. Control side; no `run`
    /// may be in progress.
    void stop();

    /// If `isOffline` is true, requests are carried out by `deliverResponses` instead of the thread, so that
    /// each run waits for them. Control side; no `run` may be in progress.
    void setOffline(bool isOffline);

    /// Passes the responses that have arrived to the plug-in. Audio thread, after each run.
    void deliverResponses() noexcept;

  private:
    static constexpr std::size_t RingBytes = std::size_t{1} << 16U;
    static constexpr std::size_t LargestMessage = RingBytes / 2;

    LV2_Worker_Status request(std::uint32_t size, const void* data) noexcept;
    LV2_Worker_Status workNow(std::uint32_t size, const void* data);
    static LV2_Worker_Status respond(LV2_Worker_Respond_Handle ring, std::uint32_t size, const void* data);
    void serve();
    void workOffRequests();
    void deliver(ByteRing& ring) noexcept;

    LV2_Worker_Schedule _schedule, _scheduleForRestore;
    LV2_Handle _handle = nullptr;
    const LV2_Worker_Interface* _interface = nullptr;
    ByteRing _requests{RingBytes};         // audio thread to worker
    ByteRing _responses{RingBytes};        // worker to audio thread
    ByteRing _restoreResponses{RingBytes}; // control side to audio thread
    std::vector<std::byte> _scratch;       // audio thread; a response, because plug-ins need contiguous data
    std::mutex _workMutex;                 // locked while `work` runs, which must not run concurrently
    std::vector<std::byte> _message;       // a request; guarded by _workMutex
    std::atomic<bool> _isOffline{false};   // written while no run is in progress
    WakeSignal _wake;
    std::atomic<bool> _isEnding{false};
    std::thread _thread;
};

} // namespace platform::lv2

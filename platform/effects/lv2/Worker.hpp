// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The thread on which a plug-in does what it may not do while it makes sound: loading files, allocating.
// Requests and answers cross in lock-free rings. Source: the worker extension of LV2.
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

    /// Returns the feature for the plug-in's `instantiate`. Requests made through it are carried out once the
    /// worker has been started. Only the thread that runs the plug-in calls it.
    [[nodiscard]] LV2_Worker_Schedule* schedule() noexcept { return &_schedule; }
    /// Returns the feature for a restore of state: the work is done inside the call. Control side.
    [[nodiscard]] LV2_Worker_Schedule* scheduleForRestore() noexcept { return &_scheduleForRestore; }

    /// Serves the plug-in `handle`, once; without an interface there is nothing to do. Control side.
    void start(LV2_Handle handle, const LV2_Worker_Interface* interface);
    /// Finishes the work in progress, drops the rest and ends the thread. Control side; no `run` may be in
    /// progress.
    void stop();

    /// Lets `deliverResponses` carry out the requests instead of the thread, because the run waits for them.
    /// Control side; no `run` may be in progress.
    void setOffline(bool isOffline);

    /// Passes the answers that have arrived to the plug-in. Audio side, after each run.
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
    ByteRing _requests{RingBytes};         // audio side to worker
    ByteRing _responses{RingBytes};        // worker to audio side
    ByteRing _restoreResponses{RingBytes}; // control side to audio side
    std::vector<std::byte> _scratch;       // audio side: one answer, in one piece as the plug-in requires
    std::mutex _workMutex;                 // held while the plug-in works: never two at once
    std::vector<std::byte> _message;       // guarded by _workMutex: a request
    std::atomic<bool> _isOffline{false};   // written while no run is under way
    WakeSignal _wake;
    std::atomic<bool> _isEnding{false};
    std::thread _thread;
};

} // namespace platform::lv2

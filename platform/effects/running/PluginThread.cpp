// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/PluginThread.hpp"

#include <map>
#include <thread>

namespace platform::lv2 {

std::shared_ptr<PluginThread> PluginThread::of(const std::string& libraryPath) {
    static std::mutex mutex;
    // By library path; guarded by `mutex`. Never destroyed, because an effect may be created while the
    // process exits.
    static auto* threads = new std::map<std::string, std::shared_ptr<PluginThread>>;
    const std::scoped_lock lock(mutex);
    auto& thread = (*threads)[libraryPath];
    if (thread && !thread->isStuck()) return thread;
    thread = std::make_shared<PluginThread>();
    std::thread([self = thread] { self->serve(); }).detach();
    return thread;
}

std::shared_ptr<const PluginThread::Call> PluginThread::post(std::function<void()> task) {
    auto call = std::make_shared<Call>();
    call->task = std::move(task);
    const std::scoped_lock lock(_mutex);
    _calls.push_back(call);
    _changed.notify_all();
    return call;
}

PluginThread::Progress PluginThread::waitFor(const Call& call, std::chrono::steady_clock::time_point end) {
    std::unique_lock lock(_mutex);
    if (!_changed.wait_until(lock, end, [&call] { return call.progress == Progress::Ended; })) {
        _isStuck = true;
    }
    return call.progress;
}

bool PluginThread::isStuck() const {
    const std::scoped_lock lock(_mutex);
    return _isStuck;
}

void PluginThread::serve() {
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return !_calls.empty(); });
        const std::shared_ptr<Call> call = std::move(_calls.front());
        _calls.pop_front();
        call->progress = Progress::Running;
        lock.unlock();
        call->task();
        call->task = nullptr;
        lock.lock();
        call->progress = Progress::Ended;
        _isStuck = false;
        _changed.notify_all();
    }
}

} // namespace platform::lv2

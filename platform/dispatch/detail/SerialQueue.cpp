// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A serial queue: a thread, a list of tasks and a condition variable. The thread starts with the first task
// that cannot run at once on the calling thread.
#include "platform/dispatch/detail/QueueImplementation.hpp"
#include "platform/foundation/fatal.hpp"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace platform {
namespace {

// The queues whose tasks the current thread is running, innermost first.
struct Ownership {
    const void* queue;
    const Ownership* outer;
};
thread_local const Ownership* innermost = nullptr;

class Owning {
  public:
    explicit Owning(const void* queue)
        : _ownership{queue, innermost} {
        innermost = &_ownership;
    }
    ~Owning() { innermost = _ownership.outer; }
    Owning(const Owning&) = delete;
    Owning& operator=(const Owning&) = delete;

  private:
    Ownership _ownership;
};

bool owns(const void* queue) {
    for (const Ownership* o = innermost; o != nullptr; o = o->outer) {
        if (o->queue == queue) return true;
    }
    return false;
}

class SerialQueue final : public DispatchQueue::Implementation,
                          public std::enable_shared_from_this<SerialQueue> {
  public:
    using Implementation::Implementation;

    void async(Task task) override {
        const std::scoped_lock lock(_mutex);
        _entries.push_back({std::move(task), nullptr});
        startOrWake();
    }

    void sync(const Task& task) override {
        if (owns(this)) fatal("DispatchQueue.sync called on a queue already owned by the current thread");
        {
            std::unique_lock lock(_mutex);
            if (_busy || !_entries.empty()) {
                Turn turn;
                _entries.push_back({nullptr, &turn});
                startOrWake();
                turn.granted.wait(lock,
                                  [&] { return turn.isGranted; }); // run() has set _busy for this caller
            } else {
                _busy = true;
            }
        }
        {
            const Owning owning(this);
            task();
        }
        const std::scoped_lock lock(_mutex);
        _busy = false;
        _changed.notify_all();
    }

    void close() override {
        const std::scoped_lock lock(_mutex);
        _closed = true;
        _changed.notify_all();
    }

  private:
    // A caller of `sync` that waits until the entries before its own are done. Lives on that caller's stack.
    struct Turn {
        std::condition_variable granted;
        bool isGranted = false;
    };
    struct Entry {
        Task task;
        Turn* turn;
    };

    void startOrWake() {
        if (!_started) {
            _started = true;
            std::thread([self = shared_from_this()] { self->run(); }).detach();
        } else {
            _changed.notify_all();
        }
    }

    void run() {
        std::unique_lock lock(_mutex);
        while (true) {
            _changed.wait(lock, [&] { return !_busy && (!_entries.empty() || _closed); });
            if (_entries.empty()) return;
            Entry entry = std::move(_entries.front());
            _entries.pop_front();
            _busy = true;
            if (entry.turn != nullptr) {
                entry.turn->isGranted = true;
                entry.turn->granted
                    .notify_one(); // under the lock: the caller destroys the Turn as soon as it can lock
                continue;
            }
            lock.unlock();
            {
                const Owning owning(this);
                entry.task();
                entry.task = nullptr; // the captures are released as part of the task
            }
            lock.lock();
            _busy = false;
        }
    }

    std::mutex _mutex; // guards all fields below
    std::condition_variable _changed;
    std::deque<Entry> _entries;
    bool _busy = false; // a task is running, on the queue's thread or in a caller of `sync`
    bool _started = false;
    bool _closed = false;
};

} // namespace

std::shared_ptr<DispatchQueue::Implementation> makeSerialQueue(std::string label) {
    return std::make_shared<SerialQueue>(std::move(label));
}

} // namespace platform

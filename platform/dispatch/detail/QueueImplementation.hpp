// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The base class of the three kinds of queue.
#pragma once

#include "platform/dispatch/DispatchQueue.hpp"

namespace platform {

class DispatchQueue::Implementation {
  public:
    explicit Implementation(std::string name)
        : label(std::move(name)) {}
    virtual ~Implementation() = default;
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    virtual void async(Task task) = 0;
    virtual void sync(const Task& task) = 0;
    /// Called when the DispatchQueue is destroyed: no more tasks will be submitted by its owner.
    virtual void close() {}

    const std::string label;
};

[[nodiscard]] std::shared_ptr<DispatchQueue::Implementation> makeMainQueue();
[[nodiscard]] std::shared_ptr<DispatchQueue::Implementation> makeGlobalQueue();
[[nodiscard]] std::shared_ptr<DispatchQueue::Implementation> makeSerialQueue(std::string label);

/// Calls `submit` after `seconds`, on the thread that waits for all delayed submissions.
void submitLater(double seconds, Task submit);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the three kinds of queue have in common.
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
    /// Called when the owner has been released: nothing more will be submitted.
    virtual void close() {}

    const std::string label;
};

[[nodiscard]] std::shared_ptr<DispatchQueue::Implementation> makeMainQueue();
[[nodiscard]] std::shared_ptr<DispatchQueue::Implementation> makeGlobalQueue();
[[nodiscard]] std::shared_ptr<DispatchQueue::Implementation> makeSerialQueue(std::string label);

/// Calls `submit` on a clock thread after `seconds`.
void submitLater(double seconds, Task submit);

} // namespace platform

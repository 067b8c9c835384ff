// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/detail/QueueImplementation.hpp"

#include <utility>

namespace platform {

DispatchQueue& DispatchQueue::main() {
    static auto* queue =
        new DispatchQueue(makeMainQueue()); // never destroyed: threads may submit until the process exits
    return *queue;
}

DispatchQueue& DispatchQueue::global() {
    static auto* queue = new DispatchQueue(makeGlobalQueue());
    return *queue;
}

DispatchQueue::DispatchQueue(std::string label)
    : _implementation(makeSerialQueue(std::move(label))) {}

DispatchQueue::DispatchQueue(std::shared_ptr<Implementation> implementation)
    : _implementation(std::move(implementation)) {}

DispatchQueue::~DispatchQueue() {
    _implementation->close();
}

void DispatchQueue::async(Task task) {
    _implementation->async(std::move(task));
}

void DispatchQueue::sync(const Task& task) {
    _implementation->sync(task);
}

void DispatchQueue::asyncAfter(double seconds, Task task) {
    submitLater(seconds, [queue = _implementation, task = std::move(task)] { queue->async(task); });
}

const std::string& DispatchQueue::label() const noexcept {
    return _implementation->label;
}

} // namespace platform

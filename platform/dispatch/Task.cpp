// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/Task.hpp"

#include "platform/dispatch/DispatchQueue.hpp"

namespace platform {
namespace {

using Work = std::function<void(const TaskHold&)>;

struct Release {
    void operator()(const Work* work) const {
        DispatchQueue::main().async([ended = std::shared_ptr<const Work>(work)] {});
    }
};

} // namespace

void startTask(Work work) {
    DispatchQueue::main().async(
        [kept = std::shared_ptr<const Work>(new Work(std::move(work)), Release())] { (*kept)(kept); });
}

} // namespace platform

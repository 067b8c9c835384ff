// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Work that starts on the main thread, continues on whatever threads its asynchronous calls complete on, and
// ends on the main thread. Objects that it captures, such as views, are therefore released on the main
// thread.
#pragma once

#include <functional>
#include <memory>

namespace platform {

/// Keeps a task alive. The task passes copies to the completions that it waits for.
using TaskHold = std::shared_ptr<const void>;

/// Submits `work` to the main queue. The task ends when the last copy of the hold passed to `work` is
/// released, on any thread; `work` and its captures are then released on the main queue. Any thread.
void startTask(std::function<void(const TaskHold& hold)> work);

} // namespace platform

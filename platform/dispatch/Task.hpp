// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Work that begins on the main thread, goes on wherever its calls answer, and ends on the main thread. What
// it holds, a view for example, is therefore released where it belongs.
#pragma once

#include <functional>
#include <memory>

namespace platform {

/// Keeps a task alive; handed on to whatever the task waits for.
using TaskHold = std::shared_ptr<const void>;

/// Have `work` called in a later turn of the main queue. The task has ended when the last copy of the hold
/// that it is given has gone, on any thread; `work` with all that it holds is then released on the main
/// queue. Any thread.
void startTask(std::function<void(const TaskHold& hold)> work);

} // namespace platform

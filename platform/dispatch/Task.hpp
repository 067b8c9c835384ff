// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Work that starts on the main thread, continues wherever its calls answer, and ends on the main thread. What
// it captures, a view for example, is therefore released where it belongs.
#pragma once

#include <functional>
#include <memory>

namespace platform {

/// Keeps a task alive; passed on to whatever the task waits for.
using TaskHold = std::shared_ptr<const void>;

/// Calls `work` in a later turn of the main queue. The task ends when the last copy of the hold passed to it
/// is released, on any thread; `work` with all its captures is then released on the main queue. Any thread.
void startTask(std::function<void(const TaskHold& hold)> work);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Calls into foreign code that may never return.
#pragma once

#include <functional>
#include <future>

namespace platform::lv2 {

/// Runs `task` on a new thread and returns a future that is ready when it has ended. Nobody waits for the
/// thread, not even the end of the process, so `task` owns everything that it uses. Any thread except the
/// audio thread.
[[nodiscard]] std::shared_future<void> runApart(std::function<void()> task);

} // namespace platform::lv2

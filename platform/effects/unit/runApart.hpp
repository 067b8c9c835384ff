// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs calls into plug-ins, which may never return, on separate threads.
#pragma once

#include <functional>
#include <future>

namespace platform::lv2 {

/// Runs `task` on a new thread and returns a future that becomes ready when `task` has returned. The thread
/// is detached, so `task` must own everything that it uses. Any thread except the audio thread.
[[nodiscard]] std::shared_future<void> runApart(std::function<void()> task);

} // namespace platform::lv2

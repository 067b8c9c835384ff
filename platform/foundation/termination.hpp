// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What must be shut down before the process starts to end: threads that use what the end destroys, such as
// the code of libraries loaded later, whose destructors run first.
#pragma once

#include <functional>

namespace platform {

/// Registers `handler`, which `prepareForTermination` calls once, the last registered first. Any thread.
void atTermination(std::function<void()> handler);

/// Calls the handlers. The application's entry calls it on the main thread when its loop has ended.
void prepareForTermination();

} // namespace platform

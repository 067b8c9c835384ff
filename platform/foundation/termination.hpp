// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What must be put to rest before the process begins to end: threads of its own that use what the end takes
// away, such as the code of libraries loaded later, whose destructors run first.
#pragma once

#include <functional>

namespace platform {

/// Have `handler` called once by `prepareForTermination`, the last added first. Any thread.
void atTermination(std::function<void()> handler);

/// Calls the handlers. The application's entry does, on the main thread, when its loop has ended.
void prepareForTermination();

} // namespace platform

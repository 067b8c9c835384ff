// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How the process ends when a signal asks for it early, and what must be shut down before it starts to end:
// threads that use what the end destroys, such as the code of libraries loaded later, whose destructors run
// first.
#pragma once

#include <csignal>
#include <functional>

namespace platform {

/// The signals by which a user, a session or a terminal asks a program to end.
inline constexpr int TerminationSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// Lets these signals end the process at once, with success, until other handlers replace these. For the
/// start of the program, while there is nothing to shut down. Main thread, before other threads run.
void endAtOnceOnSignals();

/// Registers `handler`, which `prepareForTermination` calls once, the last registered first. Any thread.
void atTermination(std::function<void()> handler);

/// Calls the handlers. The application's entry calls it on the main thread when its loop has ended.
void prepareForTermination();

} // namespace platform

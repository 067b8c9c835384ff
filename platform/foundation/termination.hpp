// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How the process ends. Threads that use objects which are destroyed at exit must be stopped before `main`
// returns. So must threads that use libraries loaded at run time, whose destructors run before those of the
// program.
#pragma once

#include <csignal>
#include <functional>

namespace platform {

/// The signals with which a user, a session or a terminal asks a program to end.
inline constexpr int TerminationSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// Lets these signals end the process at once with status 0, until other handlers are installed. For the
/// start of the program, while there is nothing to shut down. Main thread, before other threads run.
void endAtOnceOnSignals();

/// Registers `handler`, which `prepareForTermination` calls once. Handlers are called in reverse order of
/// their registration. Any thread.
void atTermination(std::function<void()> handler);

/// Calls the handlers. UIApplicationMain() calls this on the main thread after the main loop has ended.
void prepareForTermination();

} // namespace platform

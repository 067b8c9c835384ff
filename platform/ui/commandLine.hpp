// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program's few options, answered before anything starts. Call at entry only.
#pragma once

namespace platform {

/// Answers --help and --version on standard output and ends the process; refuses any other argument with one
/// sentence on standard error and status 2. Returns if there are no arguments.
void answerCommandLine(int argc, char** argv);

} // namespace platform

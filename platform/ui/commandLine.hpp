// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program's few options, answered before anything starts. Call at entry only.
#pragma once

namespace platform {

/// Answers --help and --version on standard output and exits. The answer to --version also lists the kernel's
/// mechanisms for confining processes. For any other argument, reports it in one sentence on standard error
/// and exits with status 2. Returns if there are no arguments.
void answerCommandLine(int argc, char** argv);

} // namespace platform

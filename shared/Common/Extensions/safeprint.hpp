// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Print lines to standard output from the main queue. Any thread.
#pragma once

#include <string>

namespace tonewright {

/// Returns at once. A task on the main queue prints `text` as one line. Lines are printed in the order of the
/// calls. If called on the main thread, the line comes after all lines that the current task prints.
void safeprint(std::string text);

/// Does the same as `safeprint`. Used for lines about errors.
void debugprint(std::string text);

} // namespace tonewright

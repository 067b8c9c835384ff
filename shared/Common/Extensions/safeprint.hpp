// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Lines for standard output from any thread, written later by the main queue.
#pragma once

#include <string>

namespace tonewright {

/// Writes `text` as one line from the main queue, in the order of the calls, and returns at once. When called
/// on the main thread, the line still comes after those that the present task prints.
void safeprint(std::string text);

/// Does the same; a separate name for lines about errors.
void debugprint(std::string text);

} // namespace tonewright

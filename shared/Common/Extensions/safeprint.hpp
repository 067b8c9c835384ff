// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Lines for standard output from any thread, written later by the main queue.
#pragma once

#include <string>

namespace tonewright {

/// Have `text` written as one line by the main queue, in the order of the calls, and return at once: also on
/// the main thread the line comes after those that the present work still writes itself.
void safeprint(std::string text);

/// Does the same; a name of its own for lines about errors.
void debugprint(std::string text);

} // namespace tonewright

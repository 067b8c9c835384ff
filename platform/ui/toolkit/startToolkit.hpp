// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Starting the toolkit the way this program needs it. At entry, before any other thread runs.
#pragma once

namespace platform {

/// Starts the toolkit on the X display; ends the process with one sentence and status 1 when there is none.
void startToolkit();

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Starts GTK with the settings that this program needs. Call at the start of `main`, before any other thread
// runs.
#pragma once

namespace platform {

/// Starts GTK on the X display. If the display cannot be opened, reports that in one sentence on standard
/// error and ends the process with status 1.
void startToolkit();

} // namespace platform

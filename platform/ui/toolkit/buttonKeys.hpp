// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Lets keys press buttons without delay. By default, GTK first shows an animation of a quarter of a second,
// which is too long for a musical program, and treats a held key as repeated presses. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Lets Space, Enter and the mnemonic press `button` when the key goes down. A held key presses it only once.
void pressAtOnce(GtkButton* button);

/// Tracks the key that is held down in `window`, and stops a held space bar from repeating a shortcut.
void watchHeldKeys(GtkWindow* window);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keys that press buttons without delay. The toolkit starts with a quarter of a second of animation, which is
// long for an instrument, and takes a held key for many presses. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Lets Space, Enter and the mnemonic press `button` as the key goes down, once however long it is held.
void pressAtOnce(GtkButton* button);

/// Watches the keys of `window` for held ones, and keeps its shortcuts from answering to a held space bar.
void watchHeldKeys(GtkWindow* window);

} // namespace platform

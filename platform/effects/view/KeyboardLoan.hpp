// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decides which keys of an embedded interface the window around it uses, and returns the keyboard to the
// interface after each of them. Main thread only.
#pragma once

#include "platform/effects/view/InterfaceKeys.hpp"

#include <gtk/gtk.h>

namespace platform::lv2 {

class KeyboardLoan {
  public:
    /// `area` is the widget that the interface covers; it and `keys` outlive the object.
    KeyboardLoan(GtkWidget* area, InterfaceKeys& keys)
        : _area(area)
        , _keys(keys) {}
    ~KeyboardLoan() { cancel(); }
    KeyboardLoan(const KeyboardLoan&) = delete;
    KeyboardLoan& operator=(const KeyboardLoan&) = delete;

    /// Called while the X server holds a key event of the interface. If the result is true, the key goes to
    /// the focused widget of this window instead.
    bool takes(KeySym key, bool isWithAlt);
    /// Leaves the keyboard to the window, which is about to be left or destroyed.
    void cancel();

  private:
    void giveBackAfterKey(GtkRoot* root);
    void giveBack();
    void removeController();

    GtkWidget* const _area;
    InterfaceKeys& _keys;
    GtkEventController* _controller = nullptr; // of the window, while it handles a key of the interface
    guint _idle = 0;                           // set from the release of that key on
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// X errors end a program unless somebody handles them. While a scope lives, errors on the panel's
// own connection are swallowed and those on any other go on to the host's handler, which is put
// back afterwards.
#pragma once

#include <X11/Xlib.h>

namespace tonewright::effect {

class XErrorScope {
  public:
    /// Begins to handle errors on a connection. Scopes of one thread may nest.
    explicit XErrorScope(Display* display) noexcept;
    ~XErrorScope();
    XErrorScope(const XErrorScope&) = delete;
    XErrorScope& operator=(const XErrorScope&) = delete;

  private:
    static int handle(Display* display, XErrorEvent* event);

    Display* _display;
    XErrorScope* _outer;
    XErrorHandler _previous;
};

} // namespace tonewright::effect

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Installs an X error handler, because unhandled X errors end the process. While a scope exists, errors on
// the panel's own connection are ignored. Errors on other connections are passed to the host's handler, which
// is restored afterwards.
#pragma once

#include <X11/Xlib.h>

namespace tonewright::effect {

class XErrorScope {
  public:
    /// Starts ignoring errors on a connection. Scopes may be nested.
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

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "XErrorScope.hpp"

#include <mutex>

namespace tonewright::effect {
namespace {

// Xlib's error handler is shared by the whole process, and a host may run panels on several threads.
// Therefore a mutex guards the chain of existing scopes. The mutex is never held while the host's handler
// runs.
std::mutex& chainMutex() noexcept {
    static std::mutex mutex;
    return mutex;
}
XErrorScope* innermost = nullptr;

} // namespace

XErrorScope::XErrorScope(Display* display) noexcept
    : _display{display} {
    const std::lock_guard lock{chainMutex()};
    _outer = innermost;
    innermost = this;
    _previous = XSetErrorHandler(handle);
}

XErrorScope::~XErrorScope() {
    const std::lock_guard lock{chainMutex()};
    if (innermost == this) {
        innermost = _outer;
        XSetErrorHandler(_previous);
        return;
    }
    // A later scope of another thread still exists, so this scope is removed from the middle of the chain.
    for (XErrorScope* scope = innermost; scope != nullptr; scope = scope->_outer) {
        if (scope->_outer == this) {
            scope->_outer = _outer;
            scope->_previous = _previous;
            break;
        }
    }
}

int XErrorScope::handle(Display* display, XErrorEvent* event) {
    XErrorHandler host = nullptr;
    {
        const std::lock_guard lock{chainMutex()};
        for (XErrorScope* scope = innermost; scope != nullptr; scope = scope->_outer) {
            if (scope->_display == display) {
                return 0;
            }
            if (scope->_previous != handle) {
                host = scope->_previous;
            }
        }
    }
    return host != nullptr ? host(display, event) : 0;
}

} // namespace tonewright::effect

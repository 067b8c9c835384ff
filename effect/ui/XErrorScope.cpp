// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "XErrorScope.hpp"

#include <mutex>

namespace tonewright::effect {
namespace {

// Xlib's handler belongs to the process, and a host may run panels on several threads: the chain of
// living scopes is guarded, and never locked while a host's handler runs.
std::mutex& chainMutex() noexcept {
    static std::mutex mutex;
    return mutex;
}
XErrorScope* innermost = nullptr;

} // namespace

XErrorScope::XErrorScope(Display* display) noexcept
    : display_{display} {
    const std::lock_guard lock{chainMutex()};
    outer_ = innermost;
    innermost = this;
    previous_ = XSetErrorHandler(handle);
}

XErrorScope::~XErrorScope() {
    const std::lock_guard lock{chainMutex()};
    if (innermost == this) {
        innermost = outer_;
        XSetErrorHandler(previous_);
        return;
    }
    // Another thread's scope outlives this one: take this one out of the middle of the chain.
    for (XErrorScope* scope = innermost; scope != nullptr; scope = scope->outer_) {
        if (scope->outer_ == this) {
            scope->outer_ = outer_;
            scope->previous_ = previous_;
            break;
        }
    }
}

int XErrorScope::handle(Display* display, XErrorEvent* event) {
    XErrorHandler host = nullptr;
    {
        const std::lock_guard lock{chainMutex()};
        for (XErrorScope* scope = innermost; scope != nullptr; scope = scope->outer_) {
            if (scope->display_ == display) {
                return 0;
            }
            if (scope->previous_ != handle) {
                host = scope->previous_;
            }
        }
    }
    return host != nullptr ? host(display, event) : 0;
}

} // namespace tonewright::effect

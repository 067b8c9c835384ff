// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/child/tolerateXErrors.hpp"

#include <X11/Xlib.h>
#include <atomic>
#include <cstdio>
#include <dlfcn.h>

namespace platform::lv2 {
namespace {

std::atomic<int> toReport{5}; // so many more errors

} // namespace

void tolerateXErrors() {
    void* library = ::dlopen("libX11.so.6", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) return; // the interface then has no Xlib either
    const auto setHandler =
        reinterpret_cast<decltype(&XSetErrorHandler)>(::dlsym(library, "XSetErrorHandler"));
    if (setHandler == nullptr) return;
    setHandler([](Display*, XErrorEvent* error) {
        if (toReport.fetch_sub(1) > 0) {
            std::fprintf(
                stderr,
                "An effect's interface caused an X protocol error (error %d, request %d); the error is "
                "ignored.\n",
                int{error->error_code}, int{error->request_code});
        }
        return 0;
    });
}

void ignoreXErrors() noexcept {
    toReport = 0;
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The GLib context behind a loop, for the platform's own event sources. Private to platform.
#pragma once

#include "platform/dispatch/RunLoop.hpp"

#include <glib.h>

namespace platform {

/// Give the context to attach a source to.
[[nodiscard]] inline GMainContext* contextOf(const RunLoop& loop) noexcept {
    return reinterpret_cast<GMainContext*>(loop.handle());
}

} // namespace platform

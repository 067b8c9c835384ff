// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the platform's own event sources need of a loop: its GLib context and their priority in it. Private
// to platform.
#pragma once

#include "platform/dispatch/RunLoop.hpp"

#include <glib.h>

namespace platform {

/// Returns the context to attach a source to.
[[nodiscard]] inline GMainContext* contextOf(const RunLoop& loop) noexcept {
    return reinterpret_cast<GMainContext*>(loop.handle());
}

/// Sets the priority of `source` for its next turn. One that is due again at once (`overrun`) takes turns
/// with the toolkit's drawing, whose priority it shares then; otherwise it would keep the screen from being
/// painted until its work is done.
inline void setTurnPriority(GSource* source, bool overrun) {
    const int priority = overrun ? G_PRIORITY_HIGH_IDLE + 20 : G_PRIORITY_DEFAULT;
    if (g_source_get_priority(source) != priority) g_source_set_priority(source, priority);
}

} // namespace platform

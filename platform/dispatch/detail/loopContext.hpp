// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the platform's own event sources need from a loop: its GLib context and their priority in it.
#pragma once

#include "platform/dispatch/RunLoop.hpp"

#include <glib.h>

namespace platform {

/// Returns the context to which a source is attached.
[[nodiscard]] inline GMainContext* contextOf(const RunLoop& loop) noexcept {
    return reinterpret_cast<GMainContext*>(loop.handle());
}

/// Sets the priority of `source` for its next turn. A source that is due again at once (`overrun`) gets the
/// priority of the toolkit's drawing, so the two take turns; otherwise the screen would not be painted until
/// the source's work is done.
inline void setTurnPriority(GSource* source, bool overrun) {
    const int priority = overrun ? G_PRIORITY_HIGH_IDLE + 20 : G_PRIORITY_DEFAULT;
    if (g_source_get_priority(source) != priority) g_source_set_priority(source, priority);
}

} // namespace platform

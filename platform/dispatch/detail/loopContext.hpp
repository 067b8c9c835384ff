// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Helpers for the platform's own GLib event sources: the loop's context and the sources' priority.
#pragma once

#include "platform/dispatch/RunLoop.hpp"

#include <glib.h>

namespace platform {

/// Returns the GLib context of `loop`.
[[nodiscard]] inline GMainContext* contextOf(const RunLoop& loop) noexcept {
    return reinterpret_cast<GMainContext*>(loop.handle());
}

/// Sets the priority of `source` for the next iteration. A source that is due again at once (`overrun`) gets
/// the priority of GTK's drawing, so that the loop alternates between the two; at default priority the source
/// would keep GTK from drawing until all its work is done.
inline void setTurnPriority(GSource* source, bool overrun) {
    const int priority = overrun ? G_PRIORITY_HIGH_IDLE + 20 : G_PRIORITY_DEFAULT;
    if (g_source_get_priority(source) != priority) g_source_set_priority(source, priority);
}

} // namespace platform

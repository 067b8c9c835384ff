// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The placement of a widget in a container widget, and the computation of its frame from edge constraints.
// GTK's allocation cannot replace the stored frame, because a hidden widget has no allocation. Main thread
// only.
#pragma once

#include "platform/ui/CGRect.hpp"
#include "platform/ui/LayoutEdge.hpp"

#include <array>
#include <cstddef>
#include <gtk/gtk.h>
#include <optional>

namespace platform {

struct Placement {
    CGRect frame;                           // in the superview's coordinates
    bool fills = false;                     // the interface description pins the widget to all edges
    bool translatesAutoresizingMask = true; // the frame places the widget, not the constraints
    // For each edge, in the order of LayoutEdge, the superview's edge to which it is pinned, if any.
    std::array<std::optional<LayoutEdge>, 4> constraints;
};

/// Returns the placement of `widget`. The reference is valid as long as the widget lives.
[[nodiscard]] Placement& placementOf(GtkWidget* widget);

/// Returns the frame of a widget with this placement in a superview of the given size. `mirrored` is true
/// where text runs from right to left.
[[nodiscard]] CGRect frameFor(const Placement& placement, double width, double height, bool mirrored);

} // namespace platform

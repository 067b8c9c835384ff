// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The place of a widget in one of our containers, and the arithmetic of frames and edge constraints. It is
// stored with the widget and not with the toolkit's allocation, because a hidden widget has none. Main thread
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
    bool translatesAutoresizingMask = true; // the frame counts, not the constraints
    // For each edge, in the order of LayoutEdge, the superview's edge to which it is pinned.
    std::array<std::optional<LayoutEdge>, 4> constraints;
};

/// Returns the placement of `widget`, which lives as long as the widget.
[[nodiscard]] Placement& placementOf(GtkWidget* widget);

/// Returns the frame of a widget with this placement in a superview of the given size; `mirrored` where text
/// runs from right to left.
[[nodiscard]] CGRect frameFor(const Placement& placement, double width, double height, bool mirrored);

} // namespace platform

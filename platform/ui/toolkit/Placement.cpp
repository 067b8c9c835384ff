// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/Placement.hpp"

#include <algorithm>

namespace platform {
namespace {

struct Span {
    double start;
    double length;
};

// Returns the position and length along one axis. `own` provides the values that `start` and `end` do not
// determine.
Span spanFor(Span own, std::optional<double> start, std::optional<double> end) {
    if (start && end) return {*start, std::max(0.0, *end - *start)};
    if (start) return {*start, own.length};
    if (end) return {*end - own.length, own.length};
    return own;
}

} // namespace

Placement& placementOf(GtkWidget* widget) {
    static const GQuark key = g_quark_from_static_string("platform-placement");
    auto* placement = static_cast<Placement*>(g_object_get_qdata(G_OBJECT(widget), key));
    if (placement == nullptr) {
        placement = new Placement;
        g_object_set_qdata_full(G_OBJECT(widget), key, placement,
                                [](gpointer data) { delete static_cast<Placement*>(data); });
    }
    return *placement;
}

CGRect frameFor(const Placement& placement, double width, double height, bool mirrored) {
    if (placement.fills) return {0, 0, width, height};
    if (placement.translatesAutoresizingMask) return placement.frame;
    const auto edgeAt = [&](LayoutEdge edge, double extent) -> std::optional<double> {
        const auto onto = placement.constraints[static_cast<std::size_t>(edge)];
        if (!onto) return std::nullopt;
        return *onto == LayoutEdge::Top || *onto == LayoutEdge::Leading ? 0.0 : extent;
    };
    const CGRect& frame = placement.frame;
    const auto leading = edgeAt(LayoutEdge::Leading, width);
    const auto trailing = edgeAt(LayoutEdge::Trailing, width);
    // Where text runs from right to left, the leading edge is the right one.
    Span across =
        spanFor({mirrored ? width - frame.x - frame.width : frame.x, frame.width}, leading, trailing);
    if (mirrored) across.start = width - across.start - across.length;
    const Span down =
        spanFor({frame.y, frame.height}, edgeAt(LayoutEdge::Top, height), edgeAt(LayoutEdge::Bottom, height));
    return {across.start, down.start, across.length, down.length};
}

} // namespace platform

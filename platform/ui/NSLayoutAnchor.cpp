// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/NSLayoutAnchor.hpp"

#include "platform/foundation/fatal.hpp"
#include "platform/ui/toolkit/ContainerWidget.hpp"
#include "platform/ui/toolkit/Placement.hpp"
#include "platform/ui/widgets.hpp"

namespace platform {
namespace {

bool isVertical(LayoutEdge edge) {
    return edge == LayoutEdge::Top || edge == LayoutEdge::Bottom;
}

} // namespace

std::shared_ptr<NSLayoutConstraint>
NSLayoutAnchor::constraintEqualToAnchor(const NSLayoutAnchor& anchor) const {
    return std::make_shared<NSLayoutConstraint>(*this, anchor);
}

void NSLayoutConstraint::activateConstraints(
    const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints) {
    for (const auto& constraint : constraints) {
        const NSLayoutAnchor& first = constraint->firstAnchor();
        const NSLayoutAnchor& second = constraint->secondAnchor();
        const auto view = first.view();
        const auto superview = second.view();
        if (!view || !superview || view->superview() != superview ||
            !isContainerWidget(widgetOf(*superview))) {
            fatal("A layout constraint needs a view and its superview");
        }
        if (isVertical(first.edge()) != isVertical(second.edge())) {
            fatal("A layout constraint needs two edges of the same direction");
        }
        Placement& placement = placementOf(widgetOf(*view));
        placement.constraints[static_cast<std::size_t>(first.edge())] = second.edge();
        placement.fills = false;
    }
    for (const auto& constraint : constraints) {
        if (const auto superview = constraint->secondAnchor().view()) placeChildren(widgetOf(*superview));
    }
}

bool NSLayoutConstraint::isActive() const {
    const auto view = _first.view();
    const auto superview = _second.view();
    return view && superview && view->superview() == superview &&
           placementOf(widgetOf(*view)).constraints[static_cast<std::size_t>(_first.edge())] ==
               _second.edge();
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The edges of a view as ends of layout constraints, and the constraints. Main thread only.
#pragma once

#include "platform/ui/LayoutEdge.hpp"

#include <memory>
#include <vector>

namespace platform {

class NSLayoutConstraint;
class UIView;

/// One edge of a view. It does not keep the view alive.
class NSLayoutAnchor {
  public:
    NSLayoutAnchor(std::weak_ptr<UIView> view, LayoutEdge edge)
        : _view(std::move(view))
        , _edge(edge) {}

    /// Creates the constraint that lays this edge onto `anchor`; it has no effect until it is activated.
    [[nodiscard]] std::shared_ptr<NSLayoutConstraint>
    constraintEqualToAnchor(const NSLayoutAnchor& anchor) const;

    [[nodiscard]] std::shared_ptr<UIView> view() const { return _view.lock(); }
    [[nodiscard]] LayoutEdge edge() const noexcept { return _edge; }

  private:
    std::weak_ptr<UIView> _view;
    LayoutEdge _edge;
};

/// The equality of an edge of a view with an edge of its superview in the same direction.
class NSLayoutConstraint {
  public:
    NSLayoutConstraint(NSLayoutAnchor first, NSLayoutAnchor second)
        : _first(std::move(first))
        , _second(std::move(second)) {}

    /// Activates the constraints from the next layout on, until the view leaves its superview. A constraint
    /// whose second view is not the first one's superview is fatal, as is one between a horizontal and a
    /// vertical edge.
    static void activateConstraints(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);

    [[nodiscard]] const NSLayoutAnchor& firstAnchor() const noexcept { return _first; }
    [[nodiscard]] const NSLayoutAnchor& secondAnchor() const noexcept { return _second; }
    [[nodiscard]] bool isActive() const;

  private:
    NSLayoutAnchor _first;
    NSLayoutAnchor _second;
};

} // namespace platform

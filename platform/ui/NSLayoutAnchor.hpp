// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Layout constraints, and the edges of views that they connect. Main thread only.
#pragma once

#include "platform/ui/LayoutEdge.hpp"

#include <memory>
#include <vector>

namespace platform {

class NSLayoutConstraint;
class UIView;

/// One edge of a view. Holds a weak reference to the view.
class NSLayoutAnchor {
  public:
    NSLayoutAnchor(std::weak_ptr<UIView> view, LayoutEdge edge)
        : _view(std::move(view))
        , _edge(edge) {}

    /// Creates a constraint that places this edge at the edge `anchor`. It has no effect until it is
    /// activated.
    [[nodiscard]] std::shared_ptr<NSLayoutConstraint>
    constraintEqualToAnchor(const NSLayoutAnchor& anchor) const;

    [[nodiscard]] std::shared_ptr<UIView> view() const { return _view.lock(); }
    [[nodiscard]] LayoutEdge edge() const noexcept { return _edge; }

  private:
    std::weak_ptr<UIView> _view;
    LayoutEdge _edge;
};

/// States that an edge of a view coincides with an edge of its superview. Both are vertical or both
/// horizontal.
class NSLayoutConstraint {
  public:
    NSLayoutConstraint(NSLayoutAnchor first, NSLayoutAnchor second)
        : _first(std::move(first))
        , _second(std::move(second)) {}

    /// Activates the constraints from the next layout until the view leaves its superview. It is a fatal
    /// error if the second view of a constraint is not the superview of its first view, or if a constraint
    /// connects a horizontal with a vertical edge.
    static void activateConstraints(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);

    [[nodiscard]] const NSLayoutAnchor& firstAnchor() const noexcept { return _first; }
    [[nodiscard]] const NSLayoutAnchor& secondAnchor() const noexcept { return _second; }
    [[nodiscard]] bool isActive() const;

  private:
    NSLayoutAnchor _first;
    NSLayoutAnchor _second;
};

} // namespace platform

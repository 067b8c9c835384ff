// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A rectangle of the screen that shows something and may hold other views. Main thread only.
//
// A view is placed in its superview either by its frame (`setFrame`) or, after
// `setTranslatesAutoresizingMaskIntoConstraints(false)`, by active edge constraints. Constraints follow every
// resize of the superview, even while the view or its superview is hidden. A view's minimum size never
// enlarges its superview; the part that does not fit is clipped.
//
// Only the platform has access to the GTK widget of a view (widgets.hpp).
#pragma once

#include "platform/ui/CGRect.hpp"
#include "platform/ui/NSLayoutAnchor.hpp"
#include "platform/ui/UIResponder.hpp"

#include <memory>
#include <vector>

namespace platform {

class UIView : public UIResponder {
  public:
    /// Creates an empty view that belongs to no superview.
    UIView();
    explicit UIView(const CGRect& frame);
    ~UIView() override;

    /// Returns whether the view is hidden. A hidden view keeps its place and is laid out like any other.
    [[nodiscard]] bool isHidden() const;
    void setHidden(bool hidden);

    /// Returns the frame in the superview's coordinates, in points. Negative origins are allowed.
    [[nodiscard]] CGRect frame() const;
    /// Sets the frame. If constraints place the view, the next layout overrides the frame.
    void setFrame(const CGRect& frame);
    /// Returns the view's size as a rectangle whose origin is 0, 0.
    [[nodiscard]] CGRect bounds() const;

    /// Adds `view` in front of the other subviews and keeps a strong reference to it. If `view` has a
    /// superview, it is removed from there first.
    void addSubview(const std::shared_ptr<UIView>& view);
    /// Removes this view from its superview and deactivates all constraints between them.
    void removeFromSuperview();
    /// Returns the view that contains this one, or null.
    [[nodiscard]] std::shared_ptr<UIView> superview() const;
    /// Returns the subviews from back to front.
    [[nodiscard]] std::vector<std::shared_ptr<UIView>> subviews() const;

    /// Redraws the view with the next frame.
    virtual void setNeedsDisplay();

    /// Returns true if the frame places the view, which is the default, and false if constraints do.
    [[nodiscard]] bool translatesAutoresizingMaskIntoConstraints() const;
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);

    [[nodiscard]] NSLayoutAnchor topAnchor();
    [[nodiscard]] NSLayoutAnchor leadingAnchor();
    [[nodiscard]] NSLayoutAnchor bottomAnchor();
    [[nodiscard]] NSLayoutAnchor trailingAnchor();

    [[nodiscard]] std::shared_ptr<UIResponder> nextResponder() override;

    /// The GTK side of a view, defined in detail/ViewImplementation.hpp.
    class Implementation;
    struct ImplementationRelease {
        void operator()(Implementation* implementation) const noexcept;
    };
    using ImplementationPointer = std::unique_ptr<Implementation, ImplementationRelease>;
    [[nodiscard]] Implementation& implementation() const noexcept { return *_implementation; }

  protected:
    explicit UIView(ImplementationPointer implementation);

  private:
    ImplementationPointer _implementation;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A rectangle of the screen that shows something and may hold other views. Main thread only.
//
// A view is placed in its superview in one of two ways: by its frame (`setFrame`), or, once it no longer
// translates its autoresizing mask into constraints, by active edge constraints, which follow every resize of
// the superview, also while one of the two is hidden. A view's own minimum size never pushes its superview:
// what does not fit is clipped.
//
// The toolkit's widget behind a view is seen by the platform alone (widgets.hpp).
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
    /// Sets the frame; if constraints place the view, they do so again at the next layout.
    void setFrame(const CGRect& frame);
    /// Returns the view's own rectangle: its size at the origin.
    [[nodiscard]] CGRect bounds() const;

    /// Adds `view` in front of the other subviews and keeps it; it leaves its previous superview first.
    void addSubview(const std::shared_ptr<UIView>& view);
    /// Leaves the superview, and removes all constraints to it.
    void removeFromSuperview();
    /// Returns the view that contains this one; absent if there is none.
    [[nodiscard]] std::shared_ptr<UIView> superview() const;
    /// Returns the subviews, the rearmost first.
    [[nodiscard]] std::vector<std::shared_ptr<UIView>> subviews() const;

    /// Redraws the view with the next frame.
    virtual void setNeedsDisplay();

    /// Returns whether the frame (initially) or constraints place the view.
    [[nodiscard]] bool translatesAutoresizingMaskIntoConstraints() const;
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);

    [[nodiscard]] NSLayoutAnchor topAnchor();
    [[nodiscard]] NSLayoutAnchor leadingAnchor();
    [[nodiscard]] NSLayoutAnchor bottomAnchor();
    [[nodiscard]] NSLayoutAnchor trailingAnchor();

    [[nodiscard]] std::shared_ptr<UIResponder> nextResponder() override;

    /// The toolkit's side of a view, whose definition only this room sees.
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

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One screen, or a part of one: it owns a view, hears of its life, and receives the actions of its controls.
// Main thread only.
#pragma once

#include "platform/ui/InterfaceConnections.hpp"
#include "platform/ui/NSCoder.hpp"
#include "platform/ui/UIResponder.hpp"
#include "platform/ui/UIView.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class Bundle;

class UIViewController : public UIResponder {
  public:
    /// Make a controller whose view is described by the resource `nibName`.ui of `bundle` (null: the main
    /// one). Without a name the view is what `loadView` or `setView` make it, and otherwise absent.
    explicit UIViewController(std::optional<std::string> nibName = std::nullopt,
                              const Bundle* bundle = nullptr);
    /// Make the controller that `coder` describes.
    explicit UIViewController(const NSCoder& coder);
    ~UIViewController() override;

    /// Tell whether a controller can be made from `coder`.
    [[nodiscard]] static bool canDecode(const NSCoder& coder) noexcept;

    /// Give the view, loading it first if that has not been done; absent when there is none.
    [[nodiscard]] std::shared_ptr<UIView> view();
    void setView(std::shared_ptr<UIView> view);
    [[nodiscard]] bool isViewLoaded() const noexcept { return _isViewLoaded; }

    /// Make the view: from the interface description, when there is one.
    virtual void loadView();
    /// Hear that the view was loaded and the outlets are connected.
    virtual void viewDidLoad();
    virtual void viewWillAppear(bool animated);
    virtual void viewDidAppear(bool animated);
    virtual void viewWillDisappear(bool animated);
    virtual void viewDidDisappear(bool animated);
    /// Hear that the view's subviews have got their places.
    virtual void viewDidLayoutSubviews();

    /// Make `child` a child of this controller and keep it; it leaves its former parent first.
    void addChildViewController(const std::shared_ptr<UIViewController>& child);
    void removeFromParentViewController();
    /// Hear that the move to `parent` is complete; absent: away from the former one.
    virtual void didMoveToParentViewController(const std::shared_ptr<UIViewController>& parent);
    [[nodiscard]] const std::vector<std::shared_ptr<UIViewController>>&
    childViewControllers() const noexcept {
        return _children;
    }
    [[nodiscard]] std::shared_ptr<UIViewController> parentViewController() const { return _parent.lock(); }

    [[nodiscard]] std::shared_ptr<UIResponder> nextResponder() override;
    [[nodiscard]] bool canPerformAction(std::string_view selector,
                                        const std::shared_ptr<UIResponder>& withSender) override;

    /// Perform the action `selector` of this controller; tell whether it has one.
    bool performAction(std::string_view selector, const std::shared_ptr<UIResponder>& sender);

  protected:
    /// Name the outlets and actions that the interface description may connect.
    virtual void offerConnections(InterfaceConnections& connections);

  private:
    friend class InterfaceDescription;
    const InterfaceConnections& connections();

    std::optional<std::string> _nibName;
    const Bundle* _bundle = nullptr;
    std::shared_ptr<InterfaceDescription> _description;
    std::unique_ptr<InterfaceConnections>
        _connections; // made at first use: it calls an overridable operation
    std::shared_ptr<UIView> _view;
    bool _isViewLoaded = false;
    std::vector<std::shared_ptr<UIViewController>> _children;
    std::weak_ptr<UIViewController> _parent;
};

} // namespace platform

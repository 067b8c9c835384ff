// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One screen, or a part of one: it owns a view, is told of its life, and receives the actions of its
// controls. Main thread only.
#pragma once

#include "platform/ui/InterfaceConnections.hpp"
#include "platform/ui/NSCoder.hpp"
#include "platform/ui/UIResponder.hpp"
#include "platform/ui/UIView.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class Bundle;
class InterfaceDescription;
class UIStoryboardSegue;

class UIViewController : public UIResponder {
  public:
    /// Creates a controller whose view is described by the resource `nibName`.ui of `bundle` (null: the main
    /// one). Without a name the view is the one that `loadView` or `setView` provides, and otherwise absent.
    explicit UIViewController(std::optional<std::string> nibName = std::nullopt,
                              const Bundle* bundle = nullptr);
    /// Creates the controller that `coder` describes.
    explicit UIViewController(const NSCoder& coder);
    ~UIViewController() override;

    /// Returns whether a controller can be created from `coder`.
    [[nodiscard]] static bool canDecode(const NSCoder& coder) noexcept;

    /// Returns the view, loading it first if that has not been done; absent if there is none.
    [[nodiscard]] std::shared_ptr<UIView> view();
    void setView(std::shared_ptr<UIView> view);
    [[nodiscard]] bool isViewLoaded() const noexcept { return _isViewLoaded; }

    /// Creates the view: from the interface description, if there is one.
    virtual void loadView();
    /// Called when the view has been loaded and the outlets are connected.
    virtual void viewDidLoad();
    virtual void viewWillAppear(bool animated);
    virtual void viewDidAppear(bool animated);
    virtual void viewWillDisappear(bool animated);
    virtual void viewDidDisappear(bool animated);
    /// Called when the view's subviews have been laid out.
    virtual void viewDidLayoutSubviews();

    /// Makes `child` a child of this controller and keeps it; it leaves its previous parent first.
    void addChildViewController(const std::shared_ptr<UIViewController>& child);
    void removeFromParentViewController();
    /// Called when the move to `parent` is complete; absent: it left its previous parent.
    virtual void didMoveToParentViewController(const std::shared_ptr<UIViewController>& parent);
    [[nodiscard]] const std::vector<std::shared_ptr<UIViewController>>&
    childViewControllers() const noexcept {
        return _children;
    }
    [[nodiscard]] std::shared_ptr<UIViewController> parentViewController() const { return _parent.lock(); }

    /// Shows `controller` in front of this one and keeps it while it is shown; a dialog appears as a window
    /// of the desktop. `completion`, which may be empty, is called once it is on the screen, never inside the
    /// call.
    virtual void presentViewController(const std::shared_ptr<UIViewController>& controller, bool animated,
                                       std::function<void()> completion);
    /// Dismisses the screen that this controller presents, with all that it presents itself; if there is
    /// none, the controller that presents this one dismisses it. `completion`, which may be empty, is called
    /// once afterwards, never inside the call, and not at all if nothing is presented. The change is
    /// immediate, animated or not.
    virtual void dismissViewControllerAnimated(bool animated, std::function<void()> completion);
    /// Returns the screen that this controller presents; absent if there is none. A dialog does not count.
    [[nodiscard]] std::shared_ptr<UIViewController> presentedViewController() const;
    [[nodiscard]] std::shared_ptr<UIViewController> presentingViewController() const {
        return _presenting.lock();
    }

    /// Follows the segue `identifier` of the interface description: creates its destination, calls `prepare`
    /// and presents it. An identifier that the description does not have, or a destination that cannot be
    /// created, is fatal. `sender` may be absent.
    virtual void performSegueWithIdentifier(const std::string& identifier,
                                            const std::shared_ptr<UIResponder>& sender);
    /// Called with the screen that is about to appear, before its view is loaded.
    virtual void prepare(const UIStoryboardSegue& forSegue, const std::shared_ptr<UIResponder>& sender);

    [[nodiscard]] std::shared_ptr<UIResponder> nextResponder() override;
    [[nodiscard]] bool canPerformAction(std::string_view selector,
                                        const std::shared_ptr<UIResponder>& withSender) override;

    /// Performs the action `selector` of this controller; returns whether it has one.
    bool performAction(std::string_view selector, const std::shared_ptr<UIResponder>& sender);

  protected:
    /// Offers the outlets and actions that the interface description may connect.
    virtual void offerConnections(InterfaceConnections& connections);

    /// Appears in front of `presenter`, as a controller of this kind does: a plain one takes the whole
    /// window, and the presenter's view leaves it until the dismissal.
    virtual void showOver(UIViewController& presenter, bool animated, std::function<void()> completion);

  private:
    const InterfaceConnections& connections();

    std::optional<std::string> _nibName;
    const Bundle* _bundle = nullptr;
    std::shared_ptr<InterfaceDescription> _description;
    std::unique_ptr<InterfaceConnections>
        _connections; // created at first use: it calls an overridable operation
    std::shared_ptr<UIView> _view;
    bool _isViewLoaded = false;
    std::vector<std::shared_ptr<UIViewController>> _children;
    std::weak_ptr<UIViewController> _parent;
    struct Presentation;
    std::shared_ptr<Presentation> _presentation; // of what this controller presents
    std::weak_ptr<UIViewController> _presenting;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Controls one screen or a part of a screen: owns its view, is called when the view is loaded, appears or
// disappears, and receives the actions of the view's controls. Main thread only.
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
    /// bundle). Without a name, an overridden `loadView` or a call of `setView` provides the view; otherwise
    /// the view is null.
    explicit UIViewController(std::optional<std::string> nibName = std::nullopt,
                              const Bundle* bundle = nullptr);
    /// Creates the controller that `coder` describes.
    explicit UIViewController(const NSCoder& coder);
    ~UIViewController() override;

    /// Returns whether a controller can be created from `coder`.
    [[nodiscard]] static bool canDecode(const NSCoder& coder) noexcept;

    /// Returns the view, or null if there is none. Loads the view if that has not been done yet.
    [[nodiscard]] std::shared_ptr<UIView> view();
    void setView(std::shared_ptr<UIView> view);
    [[nodiscard]] bool isViewLoaded() const noexcept { return _isViewLoaded; }

    /// Creates the view from the interface description, if there is one.
    virtual void loadView();
    /// Called when the view has been loaded and the outlets are connected.
    virtual void viewDidLoad();
    virtual void viewWillAppear(bool animated);
    virtual void viewDidAppear(bool animated);
    virtual void viewWillDisappear(bool animated);
    virtual void viewDidDisappear(bool animated);
    /// Called when the view's subviews have been laid out.
    virtual void viewDidLayoutSubviews();

    /// Adds `child` to this controller's children and keeps a strong reference to it. If `child` has a
    /// parent, it is removed from there first.
    void addChildViewController(const std::shared_ptr<UIViewController>& child);
    void removeFromParentViewController();
    /// Called when the move to `parent` is complete. `parent` is null if the controller has left its parent.
    virtual void didMoveToParentViewController(const std::shared_ptr<UIViewController>& parent);
    [[nodiscard]] const std::vector<std::shared_ptr<UIViewController>>&
    childViewControllers() const noexcept {
        return _children;
    }
    [[nodiscard]] std::shared_ptr<UIViewController> parentViewController() const { return _parent.lock(); }

    /// Shows `controller` in front of this one and keeps a strong reference to it while it is shown. A dialog
    /// appears in a window of its own. `completion`, which may be empty, is called later on the main queue.
    virtual void presentViewController(const std::shared_ptr<UIViewController>& controller, bool animated,
                                       std::function<void()> completion);
    /// Dismisses the screen that this controller presents, together with every screen presented on top of
    /// that. If this controller presents none, the controller that presents it dismisses it. `completion`,
    /// which may be empty, is called later on the main queue, but not if there was nothing to dismiss. The
    /// change is immediate even if `animated` is true.
    virtual void dismissViewControllerAnimated(bool animated, std::function<void()> completion);
    /// Returns the screen that this controller presents, or null. A dialog does not count.
    [[nodiscard]] std::shared_ptr<UIViewController> presentedViewController() const;
    [[nodiscard]] std::shared_ptr<UIViewController> presentingViewController() const {
        return _presenting.lock();
    }

    /// Performs the segue `identifier` of the interface description: creates the destination's controller,
    /// calls `prepare` and presents the controller. It is a fatal error if the description has no such segue
    /// or the controller cannot be created. `sender` may be null.
    virtual void performSegueWithIdentifier(const std::string& identifier,
                                            const std::shared_ptr<UIResponder>& sender);
    /// Called before the destination of a segue is presented and before its view is loaded.
    virtual void prepare(const UIStoryboardSegue& forSegue, const std::shared_ptr<UIResponder>& sender);

    [[nodiscard]] std::shared_ptr<UIResponder> nextResponder() override;
    [[nodiscard]] bool canPerformAction(std::string_view selector,
                                        const std::shared_ptr<UIResponder>& withSender) override;

    /// Performs the action `selector` of this controller. Returns false if there is no such action.
    bool performAction(std::string_view selector, const std::shared_ptr<UIResponder>& sender);

  protected:
    /// Adds the outlets and actions that an interface description may use to `connections`.
    virtual void offerConnections(InterfaceConnections& connections);

    /// Shows this controller in front of `presenter`. By default its view fills the whole window, and the
    /// presenter's view is taken out of the window until the dismissal.
    virtual void showOver(UIViewController& presenter, bool animated, std::function<void()> completion);

  private:
    const InterfaceConnections& connections();

    std::optional<std::string> _nibName;
    const Bundle* _bundle = nullptr;
    std::shared_ptr<InterfaceDescription> _description;
    std::unique_ptr<InterfaceConnections>
        _connections; // created at first use, because the constructor cannot call `offerConnections`
    std::shared_ptr<UIView> _view;
    bool _isViewLoaded = false;
    std::vector<std::shared_ptr<UIViewController>> _children;
    std::weak_ptr<UIViewController> _parent;
    struct Presentation;
    std::shared_ptr<Presentation> _presentation; // the screen that this controller presents, or null
    std::weak_ptr<UIViewController> _presenting;
};

} // namespace platform

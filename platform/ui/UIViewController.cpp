// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIViewController.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"
#include "platform/ui/toolkit/ContainerWidget.hpp"
#include "platform/ui/widgets.hpp"

#include <algorithm>

namespace platform {

UIViewController::UIViewController(std::optional<std::string> nibName, const Bundle* bundle)
    : _nibName(std::move(nibName))
    , _bundle(bundle) {}

UIViewController::UIViewController(const NSCoder& coder)
    : _description(coder.description()) {}

UIViewController::~UIViewController() {
    if (_view && isContainerWidget(widgetOf(*_view))) setLayoutListener(widgetOf(*_view), nullptr);
}

bool UIViewController::canDecode(const NSCoder& coder) noexcept {
    return coder.description() != nullptr;
}

std::shared_ptr<UIView> UIViewController::view() {
    if (!_isViewLoaded) {
        _isViewLoaded = true;
        const auto self = weak_from_this().lock(); // `viewDidLoad` may release the last other owner
        loadView();
        if (_view) viewDidLoad();
        return _view;
    }
    return _view;
}

void UIViewController::setView(std::shared_ptr<UIView> view) {
    _view = std::move(view);
    if (!_view || !isContainerWidget(widgetOf(*_view))) return;
    setLayoutListener(widgetOf(*_view), [self = weak_from_this()] {
        if (const auto controller = std::static_pointer_cast<UIViewController>(self.lock())) {
            controller->viewDidLayoutSubviews();
        }
    });
}

void UIViewController::loadView() {
    if (!_description && _nibName) {
        _description = InterfaceDescription::load(*_nibName, _bundle == nullptr ? Bundle::main() : *_bundle);
    }
    if (!_description) return;
    setView(_description->view());
    _description->connect(
        shared_from_this(), connections(),
        [](UIResponder& owner, const std::string& selector, const std::shared_ptr<UIView>& sender) {
            auto& self = static_cast<UIViewController&>(owner);
            if (self._description->destinationOfSegue(selector)) {
                self.performSegueWithIdentifier(selector, sender);
            } else {
                self.performAction(selector, sender);
            }
        });
}

void UIViewController::viewDidLoad() {}
void UIViewController::viewWillAppear(bool) {}
void UIViewController::viewDidAppear(bool) {}
void UIViewController::viewWillDisappear(bool) {}
void UIViewController::viewDidDisappear(bool) {}
void UIViewController::viewDidLayoutSubviews() {}

void UIViewController::addChildViewController(const std::shared_ptr<UIViewController>& child) {
    child->removeFromParentViewController();
    child->_parent = std::static_pointer_cast<UIViewController>(shared_from_this());
    _children.push_back(child);
}

void UIViewController::removeFromParentViewController() {
    const auto parent = _parent.lock();
    if (!parent) return;
    const auto self = shared_from_this(); // the parent may be the only owner
    _parent.reset();
    std::erase(parent->_children, self);
}

void UIViewController::didMoveToParentViewController(const std::shared_ptr<UIViewController>&) {}

void UIViewController::presentViewController(const std::shared_ptr<UIViewController>& controller,
                                             bool animated, std::function<void()> completion) {
    controller->showOver(*this, animated, std::move(completion));
}

std::shared_ptr<UIResponder> UIViewController::nextResponder() {
    return parentViewController();
}

bool UIViewController::canPerformAction(std::string_view selector,
                                        const std::shared_ptr<UIResponder>& withSender) {
    return connections().findAction(selector) != nullptr ||
           UIResponder::canPerformAction(selector, withSender);
}

bool UIViewController::performAction(std::string_view selector, const std::shared_ptr<UIResponder>& sender) {
    const auto self = shared_from_this(); // the action may release the last other owner
    const InterfaceConnections::Action* action = connections().findAction(selector);
    if (action != nullptr) (*action)(sender);
    return action != nullptr;
}

void UIViewController::offerConnections(InterfaceConnections&) {}

const InterfaceConnections& UIViewController::connections() {
    if (!_connections) {
        _connections = std::make_unique<InterfaceConnections>();
        offerConnections(*_connections);
    }
    return *_connections;
}

} // namespace platform

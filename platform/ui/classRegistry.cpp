// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/classRegistry.hpp"

#include "platform/ui/detail/ViewImplementation.hpp"

#include <map>

namespace platform {
namespace {

template <class Factory>
using Registry = std::map<std::string, Factory, std::less<>>;

Registry<DelegateFactory>& delegates() {
    static Registry<DelegateFactory> registry;
    return registry;
}

Registry<ControllerFactory>& controllers() {
    static Registry<ControllerFactory> registry;
    return registry;
}

Registry<ViewFactory>& views() {
    static Registry<ViewFactory> registry;
    return registry;
}

} // namespace

void registerDelegateFactory(std::string name, DelegateFactory factory) {
    delegates().insert_or_assign(std::move(name), std::move(factory));
}

void registerControllerFactory(std::string name, ControllerFactory factory) {
    controllers().insert_or_assign(std::move(name), std::move(factory));
}

void registerViewFactory(std::string name, ViewFactory factory) {
    views().insert_or_assign(std::move(name), std::move(factory));
}

std::shared_ptr<UIApplicationDelegate> makeDelegate(std::string_view name) {
    const auto found = delegates().find(name);
    return found == delegates().end() ? nullptr : found->second();
}

std::shared_ptr<UIViewController> makeController(std::string_view name, const NSCoder& coder) {
    const auto found = controllers().find(name);
    return found == controllers().end() ? nullptr : found->second(coder);
}

std::shared_ptr<UIView> makeView(std::string_view name, UIView::ImplementationPointer& implementation) {
    const auto found = views().find(name);
    return found == views().end() ? nullptr : found->second(std::move(implementation));
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates objects of classes that are registered by name: the application's delegate, and the controllers and
// views of interface descriptions. Main thread only.
#pragma once

#include "platform/ui/NSCoder.hpp"
#include "platform/ui/UIView.hpp"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace platform {

class UIApplicationDelegate;
class UIViewController;

using DelegateFactory = std::function<std::shared_ptr<UIApplicationDelegate>()>;
using ControllerFactory = std::function<std::shared_ptr<UIViewController>(const NSCoder&)>;
using ViewFactory = std::function<std::shared_ptr<UIView>(UIView::ImplementationPointer)>;

void registerDelegateFactory(std::string name, DelegateFactory factory);
void registerControllerFactory(std::string name, ControllerFactory factory);
void registerViewFactory(std::string name, ViewFactory factory);

/// Registers the delegate or controller class T under `name`. A controller class must have a static function
/// `initWithCoder`.
template <class T>
void registerClass(std::string name) {
    if constexpr (std::is_base_of_v<UIApplicationDelegate, T>) {
        registerDelegateFactory(std::move(name), [] { return std::make_shared<T>(); });
    } else {
        registerControllerFactory(std::move(name),
                                  [](const NSCoder& coder) { return T::initWithCoder(coder); });
    }
}

/// Creates a delegate of the class `name`, or returns null if no such class is registered.
[[nodiscard]] std::shared_ptr<UIApplicationDelegate> makeDelegate(std::string_view name);
/// Creates a controller of the class `name`, or returns null if no such class is registered or
/// `initWithCoder` returns null.
[[nodiscard]] std::shared_ptr<UIViewController> makeController(std::string_view name, const NSCoder& coder);
/// Creates a view of the class `name`, which takes over `implementation`. If no such class is registered,
/// returns null and leaves `implementation` unchanged.
[[nodiscard]] std::shared_ptr<UIView> makeView(std::string_view name,
                                               UIView::ImplementationPointer& implementation);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The outlets and actions that a controller offers to its interface description, each under the name that the
// description uses. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

class InterfaceConnections {
  public:
    using Outlet = std::function<bool(const std::shared_ptr<UIView>&)>; // false: the view has the wrong class
    using Action = std::function<void(const std::shared_ptr<UIResponder>& sender)>;

    /// Offers `field` as the outlet `name`. The field must outlive this table.
    template <class View>
    void outlet(std::string name, std::shared_ptr<View>& field) {
        _outlets.insert_or_assign(std::move(name), [&field](const std::shared_ptr<UIView>& view) {
            field = std::dynamic_pointer_cast<View>(view);
            return field != nullptr;
        });
    }

    /// Offers the weak reference `field` as the outlet `name`. The screen keeps the object alive as long as
    /// its controller lives.
    template <class View>
    void outlet(std::string name, std::weak_ptr<View>& field) {
        _outlets.insert_or_assign(std::move(name), [&field](const std::shared_ptr<UIView>& view) {
            field = std::dynamic_pointer_cast<View>(view);
            return !field.expired();
        });
    }

    /// Offers `method` of `object` to controls as the action `selector` ("onPlayButton:"). The object must
    /// outlive this table. A sender that is not of the class `Sender` is passed as null.
    template <class Object, class Owner, class Sender>
    void action(std::string selector, Object* object, void (Owner::*method)(const std::shared_ptr<Sender>&)) {
        _actions.insert_or_assign(std::move(selector),
                                  [object, method](const std::shared_ptr<UIResponder>& sender) {
                                      (object->*method)(std::dynamic_pointer_cast<Sender>(sender));
                                  });
    }

    [[nodiscard]] const std::map<std::string, Outlet, std::less<>>& outlets() const noexcept {
        return _outlets;
    }
    /// Returns the action named `selector`, or null if there is none.
    [[nodiscard]] const Action* findAction(std::string_view selector) const;

  private:
    std::map<std::string, Outlet, std::less<>> _outlets;
    std::map<std::string, Action, std::less<>> _actions;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An interface description that has been read: a GtkBuilder file whose object ids are the outlets and whose
// handler names are the actions of one controller. Main thread only.
//
// A segue in it leads to another screen: its id is the segue's identifier, its property
// "destination" names the other screen's description. A handler of that name performs the segue without an
// action.
//
// The root of the screen has the id "view"; the main screen's is in a window with the id "window".
#pragma once

#include "platform/ui/GObjectRef.hpp"
#include "platform/ui/InterfaceConnections.hpp"
#include "platform/ui/UIView.hpp"

#include <gtk/gtk.h>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

class Bundle;
class UIWindow;

class InterfaceDescription : public std::enable_shared_from_this<InterfaceDescription> {
  public:
    /// Reads the resource `name`.ui of `bundle`; absent, with a sentence on standard error, if that fails.
    [[nodiscard]] static std::shared_ptr<InterfaceDescription> load(const std::string& name,
                                                                    const Bundle& bundle);

    /// Returns the class of the controller that the root view names; empty if it names none.
    [[nodiscard]] std::string controllerClass() const;
    /// Returns the root view; absent if the description has none.
    [[nodiscard]] std::shared_ptr<UIView> view() const;
    [[nodiscard]] std::shared_ptr<UIWindow> window() const;

    /// Returns the object with the id `name`; absent if there is none or it is not a widget.
    [[nodiscard]] std::shared_ptr<UIView> viewNamed(const char* name) const;

    /// Performs the action or the segue `selector` of `owner` for `sender`.
    using Perform = void (*)(UIResponder& owner, const std::string& selector,
                             const std::shared_ptr<UIView>& sender);

    /// Connects outlets and actions of `owner`, for which `performer` is called from now on. An action that
    /// it does not have, or an object that does not fit its outlet, is reported on standard error; the
    /// control has no effect then, the outlet is absent.
    void connect(const std::shared_ptr<UIResponder>& owner, const InterfaceConnections& connections,
                 Perform performer);

    /// Returns the name of the description to which the segue `identifier` leads; absent if there is no such
    /// segue.
    [[nodiscard]] std::optional<std::string> destinationOfSegue(const std::string& identifier) const;

    /// Performs the action or the segue `selector` for `sender`. The handlers of the controls call it.
    void perform(const std::string& selector, GtkWidget* sender);
    /// Records that a control names `selector` as its action.
    void noteAction(std::string selector) { _actions.insert(std::move(selector)); }

  private:
    std::string _name;
    GObjectRef<GtkBuilder> _builder;
    std::set<std::string> _actions;
    std::weak_ptr<UIResponder> _owner;
    Perform _perform = nullptr;
    std::vector<std::shared_ptr<UIView>> _kept; // the objects of outlets, also of those that do not keep them
};

} // namespace platform

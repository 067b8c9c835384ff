// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An interface description that has been read from a GtkBuilder file. The ids of its objects name the outlets
// of one controller, its handler names the controller's actions. Main thread only.
//
// A segue object leads to another screen: its id is the identifier of the segue, its property "destination"
// is the name of the other screen's interface description. A control whose handler has the name of a segue
// performs that segue.
//
// The root view of a screen has the id "view". The main screen's root view is inside a window with the id
// "window".
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
    /// Reads the resource `name`.ui of `bundle`. If that fails, returns null and reports the reason on
    /// standard error.
    [[nodiscard]] static std::shared_ptr<InterfaceDescription> load(const std::string& name,
                                                                    const Bundle& bundle);

    /// Returns the controller class that the root view names, or an empty string if it names none.
    [[nodiscard]] std::string controllerClass() const;
    /// Returns the root view, or null if the description has none.
    [[nodiscard]] std::shared_ptr<UIView> view() const;
    [[nodiscard]] std::shared_ptr<UIWindow> window() const;

    /// Returns the view of the widget with the id `name`, or null if there is no such widget.
    [[nodiscard]] std::shared_ptr<UIView> viewNamed(const char* name) const;

    /// A function that performs the action or segue `selector` of `owner` for `sender`.
    using Perform = void (*)(UIResponder& owner, const std::string& selector,
                             const std::shared_ptr<UIView>& sender);

    /// Connects the outlets and actions of `owner`; from now on its controls call `performer`. Reports on
    /// standard error an action that `owner` does not have (the control then does nothing) and an object of
    /// the wrong class for its outlet (the outlet is then null).
    void connect(const std::shared_ptr<UIResponder>& owner, const InterfaceConnections& connections,
                 Perform performer);

    /// Returns the name of the description to which the segue `identifier` leads, or no value if there is no
    /// such segue.
    [[nodiscard]] std::optional<std::string> destinationOfSegue(const std::string& identifier) const;

    /// Performs the action or segue `selector` for `sender`. Called by the signal handlers of the controls.
    void perform(const std::string& selector, GtkWidget* sender);
    /// Records that a control uses `selector` as its action.
    void noteAction(std::string selector) { _actions.insert(std::move(selector)); }

  private:
    std::string _name;
    GObjectRef<GtkBuilder> _builder;
    std::set<std::string> _actions;
    std::weak_ptr<UIResponder> _owner;
    Perform _perform = nullptr;
    std::vector<std::shared_ptr<UIView>>
        _kept; // the objects of outlets, because an outlet may be a weak reference
};

} // namespace platform

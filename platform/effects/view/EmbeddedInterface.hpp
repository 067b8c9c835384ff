// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The GTK widget around an effect's embedded interface. It keeps the interface's X11 socket at the widget's
// position, scrolls if the interface is larger, and shares the keyboard with it. Main thread only.
#pragma once

#include "platform/effects/unit/EffectInterface.hpp"
#include "platform/effects/view/X11Socket.hpp"

#include <functional>
#include <gtk/gtk.h>
#include <memory>
#include <string>

namespace platform::lv2 {

/// Called once when an interface has ended, with the way in which it did. Must not destroy the widget at
/// once.
using InterfaceEnded = std::function<void(EffectInterface::State)>;

/// Creates the widget for an open interface and returns a floating reference. The widget owns `socket` and
/// `interface`. `name` is its accessible label.
[[nodiscard]] GtkWidget* makeEmbeddedInterface(std::unique_ptr<X11Socket> socket,
                                               std::unique_ptr<EffectInterface> interface,
                                               const std::string& name, InterfaceEnded ended);

} // namespace platform::lv2

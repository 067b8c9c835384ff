// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The panel's side of an effect's own interface: a widget that keeps the socket with the interface in step
// with its own place, scrolls if the interface is larger, and shares the keyboard with it. Main thread only.
#pragma once

#include "platform/effects/lv2/InterfaceHost.hpp"
#include "platform/effects/lv2/X11Socket.hpp"

#include <gtk/gtk.h>
#include <string>

namespace platform::lv2 {

/// Creates the widget, a floating reference; it owns both. `name` is its accessible label.
[[nodiscard]] GtkWidget* makeEmbeddedInterface(std::unique_ptr<X11Socket> socket,
                                               std::unique_ptr<InterfaceHost> host, const std::string& name);

} // namespace platform::lv2

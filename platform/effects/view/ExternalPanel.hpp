// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The widget for an effect whose interface opens windows of its own: the plain list, and below it a button
// that shows the interface's window or raises it. Main thread only.
#pragma once

#include "platform/effects/unit/AudioUnit.hpp"

#include <gtk/gtk.h>

namespace platform::lv2 {

/// Creates the widget and returns a floating reference. The interface's process is started by the button and
/// ends with the widget, or when the user closes the interface's window.
[[nodiscard]] GtkWidget* makeExternalPanel(std::shared_ptr<AudioUnit> unit, const Interface& interface);

} // namespace platform::lv2

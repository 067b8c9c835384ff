// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A generic interface for any effect: a list of its parameters with their values, and its presets. Uses only
// AUAudioUnit. Main thread only.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"

#include <gtk/gtk.h>

namespace platform {

/// Creates the widget and returns a floating reference. The widget holds a strong reference to the unit.
/// `name` is its title and accessible label; `note` is a sentence shown below the title, or empty.
[[nodiscard]] GtkWidget* makeGenericInterface(std::shared_ptr<AUAudioUnit> unit, const std::string& name,
                                              const std::string& note);

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A plain interface for any effect: a list of its parameters with their values, and its presets. It uses
// nothing but AUAudioUnit. Main thread only.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"

#include <gtk/gtk.h>

namespace platform {

/// Creates the widget, a floating reference; it keeps the unit. `name` is its title and its accessible label,
/// `note` a sentence below the title; empty for none.
[[nodiscard]] GtkWidget* makeGenericInterface(std::shared_ptr<AUAudioUnit> unit, const std::string& name,
                                              const std::string& note);

} // namespace platform

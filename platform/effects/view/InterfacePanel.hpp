// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The widget in which an effect's own interface is shown, and in its place, when the interface has ended, the
// plain list with the reason and a button that opens the interface again. Main thread only.
#pragma once

#include "platform/effects/unit/AudioUnit.hpp"

#include <functional>
#include <gtk/gtk.h>

namespace platform::lv2 {

/// Creates the effect's own interface and passes `completion` the widget that shows it, at once or later;
/// null, with the reason reported on standard error, if it could not be created. The widget is owned by its
/// parent, or by nobody yet. The caller must have called the unit's `claimInterface`.
void openInterface(std::shared_ptr<AudioUnit> unit, const Interface& interface,
                   std::function<void(GtkWidget*)> completion);

} // namespace platform::lv2

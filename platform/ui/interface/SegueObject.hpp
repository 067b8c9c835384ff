// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The object that represents a segue in an interface description. Main thread only.
#pragma once

#include <glib-object.h>
#include <string>

namespace platform {

/// Returns the GObject type of segues. Registers the type at the first call.
[[nodiscard]] GType segueObjectType();

[[nodiscard]] bool isSegueObject(GObject* object);

/// Returns the name of the interface description to which the segue leads.
[[nodiscard]] std::string destinationOf(GObject* segue);

} // namespace platform

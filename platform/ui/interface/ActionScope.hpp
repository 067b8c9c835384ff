// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The GtkBuilderScope that resolves the handler names of an interface description. Each name stands for an
// action of the controller to which the description is connected. Main thread only.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <gtk/gtk.h>
#include <memory>

namespace platform {

class InterfaceDescription;

/// Creates the scope for `description`. The scope holds a weak reference to it.
[[nodiscard]] GObjectRef<GtkBuilderScope>
makeActionScope(const std::shared_ptr<InterfaceDescription>& description);

} // namespace platform

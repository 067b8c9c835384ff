// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The scope in which the toolkit looks up the handler names of an interface description: each becomes an
// action of the controller that the description is connected to. Main thread only.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <gtk/gtk.h>
#include <memory>

namespace platform {

class InterfaceDescription;

/// Creates the scope for `description`, which it does not keep.
[[nodiscard]] GObjectRef<GtkBuilderScope>
makeActionScope(const std::shared_ptr<InterfaceDescription>& description);

} // namespace platform

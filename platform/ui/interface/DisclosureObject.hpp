// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An object in an interface description that states which button shows and hides which view. While the view
// is visible, assistive technology is told that the button is expanded. Main thread only.
#pragma once

#include <glib-object.h>

namespace platform {

/// Returns the GObject type of disclosures, which have the properties "button" and "view". Registers the type
/// at the first call.
[[nodiscard]] GType disclosureObjectType();

} // namespace platform

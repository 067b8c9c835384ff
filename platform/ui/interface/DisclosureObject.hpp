// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The object of an interface description that states which button shows and hides which view. It tells
// assistive technology that the button is expanded while the view is shown. Main thread only.
#pragma once

#include <glib-object.h>

namespace platform {

/// Returns the type of disclosures with the properties "button" and "view", registering it first.
[[nodiscard]] GType disclosureObjectType();

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Access to the GTK texture of an image, for the platform's own code. Any thread.
#pragma once

#include "platform/ui/UIImage.hpp"

#include <gdk/gdk.h>

namespace platform {

/// Returns the texture of `image`, which owns it.
[[nodiscard]] GdkTexture* textureOf(const UIImage& image) noexcept;

} // namespace platform

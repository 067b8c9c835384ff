// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The components of a colour, as they are: neither clamped nor rounded. Any thread.
#pragma once

#include "platform/ui/UIColor.hpp"

namespace tonewright {

[[nodiscard]] inline double redValue(const platform::UIColor& color) noexcept {
    return platform::CIColor(color).red();
}
[[nodiscard]] inline double greenValue(const platform::UIColor& color) noexcept {
    return platform::CIColor(color).green();
}
[[nodiscard]] inline double blueValue(const platform::UIColor& color) noexcept {
    return platform::CIColor(color).blue();
}
[[nodiscard]] inline double alphaValue(const platform::UIColor& color) noexcept {
    return platform::CIColor(color).alpha();
}

} // namespace tonewright

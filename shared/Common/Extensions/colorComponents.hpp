// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Return the components of a colour without clamping or rounding. Any thread.
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

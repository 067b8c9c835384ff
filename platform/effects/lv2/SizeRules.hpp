// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The size of an interface in a given area: what it requests, what its hints allow, what it refused. Device
// pixels.
#pragma once

#include "platform/effects/lv2/X11Socket.hpp"

#include <X11/Xutil.h>
#include <algorithm>
#include <utility>

namespace platform::lv2 {

struct SizeRules {
    PixelSize wanted;
    PixelSize refusedBelow; // it did not get smaller than this
    XSizeHints hints{};
    bool isFixed = false; // according to its description

    [[nodiscard]] bool says(long flag) const noexcept { return (hints.flags & flag) != 0; }

    [[nodiscard]] bool keepsWanted() const noexcept {
        return isFixed || (says(PMinSize) && says(PMaxSize) && hints.min_width == hints.max_width &&
                           hints.min_height == hints.max_height);
    }

    void setHints(const XSizeHints& told) noexcept {
        hints = told;
        if (keepsWanted() && !isFixed) wanted = {hints.min_width, hints.min_height};
    }

    /// Records the size that the interface took instead of the given one.
    void refused(const PixelSize& given, const PixelSize& taken) noexcept {
        if (taken.width > given.width) refusedBelow.width = std::max(refusedBelow.width, taken.width);
        if (taken.height > given.height) refusedBelow.height = std::max(refusedBelow.height, taken.height);
    }

    /// Returns the size below which the interface is clipped rather than shrunk. One that does not state how
    /// small it can get may lose its controls below the size for which it was made.
    [[nodiscard]] PixelSize smallest() const noexcept {
        if (keepsWanted()) return wanted;
        const PixelSize told = says(PMinSize) ? PixelSize{hints.min_width, hints.min_height} : wanted;
        return {std::max(told.width, refusedBelow.width), std::max(told.height, refusedBelow.height)};
    }

    /// Returns the size in an area of that size.
    [[nodiscard]] PixelSize sizeIn(const PixelSize& area) const noexcept {
        if (keepsWanted()) return wanted;
        auto [width, height] = area;
        if (says(PMaxSize) && hints.max_width > 0 && hints.max_height > 0) {
            width = std::min(width, hints.max_width);
            height = std::min(height, hints.max_height);
        }
        const auto part = [](int length, int numerator, int denominator) {
            return static_cast<int>(static_cast<long long>(length) * numerator / denominator);
        };
        const auto &least = hints.min_aspect, &most = hints.max_aspect; // of width to height
        if (says(PAspect) && least.x > 0 && least.y > 0 && most.x > 0 && most.y > 0) {
            width = std::min(width, part(height, most.x, most.y));
            height = std::min(height, part(width, least.y, least.x));
        }
        if (says(PResizeInc)) {
            const auto step = [](int length, int base, int by) {
                return by > 1 && length > base ? length - (length - base) % by : length;
            };
            const bool hasBase = says(PBaseSize);
            width = step(width, hasBase ? hints.base_width : hints.min_width, hints.width_inc);
            height = step(height, hasBase ? hints.base_height : hints.min_height, hints.height_inc);
        }
        const PixelSize bottom = smallest();
        return {std::max({width, bottom.width, 1}), std::max({height, bottom.height, 1})};
    }
};

} // namespace platform::lv2

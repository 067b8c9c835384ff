// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Computes the size of an interface in a given area, from the size that it requests, its size hints, and the
// sizes that it has refused. In device pixels.
#pragma once

#include "platform/effects/view/X11Socket.hpp"

#include <X11/Xutil.h>
#include <algorithm>
#include <utility>

namespace platform::lv2 {

struct SizeRules {
    PixelSize wanted;
    PixelSize refusedBelow; // the interface has refused smaller sizes
    XSizeHints hints{};
    bool isFixed = false; // the interface's description states a fixed size

    [[nodiscard]] bool says(long flag) const noexcept { return (hints.flags & flag) != 0; }

    [[nodiscard]] bool keepsWanted() const noexcept {
        return isFixed || (says(PMinSize) && says(PMaxSize) && hints.min_width == hints.max_width &&
                           hints.min_height == hints.max_height);
    }

    void setHints(const XSizeHints& told) noexcept {
        hints = told;
        if (keepsWanted() && !isFixed) wanted = {hints.min_width, hints.min_height};
    }

    /// Records that the interface resized itself to `taken` after it was resized to `given`.
    void refused(const PixelSize& given, const PixelSize& taken) noexcept {
        if (taken.width > given.width) refusedBelow.width = std::max(refusedBelow.width, taken.width);
        if (taken.height > given.height) refusedBelow.height = std::max(refusedBelow.height, taken.height);
    }

    /// Returns the size below which the interface is clipped instead of resized. If an interface states no
    /// minimum size, that is the size that it requests, because a smaller one may hide some of its controls.
    [[nodiscard]] PixelSize smallest() const noexcept {
        if (keepsWanted()) return wanted;
        const PixelSize told = says(PMinSize) ? PixelSize{hints.min_width, hints.min_height} : wanted;
        return {std::max(told.width, refusedBelow.width), std::max(told.height, refusedBelow.height)};
    }

    /// Returns the size of the interface in an area of size `area`.
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
        const auto &least = hints.min_aspect, &most = hints.max_aspect; // ratios of width to height
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

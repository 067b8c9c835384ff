// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Identifies an audio component by five 32-bit codes, or states the search criteria for components.
#pragma once

#include <cstdint>

namespace platform {

struct AudioComponentDescription {
    std::uint32_t componentType = 0;
    std::uint32_t componentSubType = 0;
    std::uint32_t componentManufacturer = 0;
    std::uint32_t componentFlags = 0;
    std::uint32_t componentFlagsMask = 0; // in a search, the flags that are compared

    friend bool operator==(const AudioComponentDescription&, const AudioComponentDescription&) = default;
};

/// Packs four characters into a code, the first into the most significant byte: `fourCharCode("aumf")`.
[[nodiscard]] constexpr std::uint32_t fourCharCode(const char (&text)[5]) noexcept {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i) code = (code << 8U) | static_cast<unsigned char>(text[i]);
    return code;
}

/// Returns whether `component` matches a search for `wanted`. Type, subtype and manufacturer must be equal
/// unless they are 0 in `wanted`; only the flags in the mask of `wanted` are compared.
[[nodiscard]] constexpr bool matches(const AudioComponentDescription& component,
                                     const AudioComponentDescription& wanted) noexcept {
    const auto equal = [](std::uint32_t code, std::uint32_t want) { return want == 0 || code == want; };
    return equal(component.componentType, wanted.componentType) &&
           equal(component.componentSubType, wanted.componentSubType) &&
           equal(component.componentManufacturer, wanted.componentManufacturer) &&
           ((component.componentFlags ^ wanted.componentFlags) & wanted.componentFlagsMask) == 0;
}

} // namespace platform

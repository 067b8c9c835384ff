// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/RatePath.hpp"

#include <cmath>

namespace platform {
namespace {

std::unique_ptr<RateConverter> converterBetween(double from, double to, std::uint32_t channels) {
    if (from == to) return nullptr;
    return std::make_unique<RateConverter>(from, to, channels);
}

double inputOf(const RateConverter& converter, double outputFrames, double from, double to) {
    return std::ceil(outputFrames * from / to) + converter.tailFrames() + 2;
}

} // namespace

RatePath::RatePath(const Rates& rates, std::uint32_t channels)
    : _rates(rates)
    , _first(converterBetween(rates.from, rates.over, channels))
    , _last(converterBetween(rates.over, rates.to, channels)) {}

std::uint32_t RatePath::inputFor(std::uint32_t outputFrames) const noexcept {
    double frames = outputFrames;
    if (_last) frames = inputOf(*_last, frames, _rates.over, _rates.to);
    if (_first) frames = inputOf(*_first, frames, _rates.from, _rates.over);
    return static_cast<std::uint32_t>(frames);
}

} // namespace platform

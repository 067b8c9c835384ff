// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/Easing.hpp"

#include "shared/Common/Animator/detail/easingActions.hpp"
#include "shared/Common/Animator/detail/easingFormulas.hpp"

#include <array>

namespace tonewright {
namespace {

using namespace easing;

// A row of the catalogue. `plain` calls the formula itself, `overridable` the functions that a subclass may
// override.
struct Row {
    std::string_view name;
    EasingFunction function;
    Animator::Action plain;
    Animator::Action overridable;
};

template <EasingFunction Formula>
float formula(Animator&, std::int64_t currentFrame, float sourceValue, float amount, std::int64_t numFrames) {
    return Formula(currentFrame, sourceValue, amount, numFrames);
}

template <auto Member>
float member(Animator& animator, std::int64_t currentFrame, float sourceValue, float amount,
             std::int64_t numFrames) {
    return (animator.*Member)(currentFrame, sourceValue, amount, numFrames);
}

template <EasingFunction Formula>
constexpr Row row(std::string_view name) {
    return {name, Formula, formula<Formula>, formula<Formula>};
}

template <EasingFunction Formula, auto Member>
constexpr Row row(std::string_view name) {
    return {name, Formula, formula<Formula>, member<Member>};
}

// In the order of EnumEasing.
constexpr auto Catalogue = std::to_array<Row>({
    row<easeNone>("easeNone"),
    row<easeInPower<2>>("easeInQuad"),
    row<easeOutQuad>("easeOutQuad"),
    row<easeInOutQuad>("easeInOutQuad"),
    row<easeOutIn<easeOutQuad, easeInPower<2>>>("easeOutInQuad"),
    row<easeInPower<3>>("easeInCubic"),
    row<easeOutPower<3>>("easeOutCubic"),
    row<easeInOutPower<3>>("easeInOutCubic"),
    row<easeOutIn<easeOutPower<3>, easeInPower<3>>>("easeOutInCubic"),
    row<easeInPower<4>>("easeInQuart"),
    row<easeOutPower<4>>("easeOutQuart"),
    row<easeInOutPower<4>>("easeInOutQuart"),
    row<easeOutIn<easeOutPower<4>, easeInPower<4>>>("easeOutInQuart"),
    row<easeInPower<5>>("easeInQuint"),
    row<easeOutPower<5>>("easeOutQuint"),
    row<easeInOutPower<5>>("easeInOutQuint"),
    row<easeOutIn<easeOutPower<5>, easeInPower<5>>>("easeOutInQuint"),
    row<easeInSine>("easeInSine"),
    row<easeOutSine>("easeOutSine"),
    row<easeInOutSine>("easeInOutSine"),
    row<easeOutIn<easeOutSine, easeInSine>>("easeOutInSine"),
    row<easeInExpo>("easeInExpo"),
    row<easeOutExpo>("easeOutExpo"),
    row<easeInOutExpo>("easeInOutExpo"),
    row<easeOutIn<easeOutExpo, easeInExpo>>("easeOutInExpo"),
    row<easeInCirc>("easeInCirc"),
    row<easeOutCirc>("easeOutCirc"),
    row<easeInOutCirc>("easeInOutCirc"),
    row<easeOutIn<easeOutCirc, easeInCirc>>("easeOutInCirc"),
    row<easing::easeInElastic, &Animator::easeInElastic>("easeInElastic"),
    row<easing::easeOutElastic, &Animator::easeOutElastic>("easeOutElastic"),
    row<easing::easeInOutElastic, &Animator::easeInOutElastic>("easeInOutElastic"),
    row<easeOutIn<easing::easeOutElastic, easing::easeInElastic>, &Animator::easeOutInElastic>(
        "easeOutInElastic"),
    row<easing::easeInBack, &Animator::easeInBack>("easeInBack"),
    row<easing::easeOutBack, &Animator::easeOutBack>("easeOutBack"),
    row<easing::easeInOutBack, &Animator::easeInOutBack>("easeInOutBack"),
    row<easeOutIn<easing::easeOutBack, easing::easeInBack>, &Animator::easeOutInBack>("easeOutInBack"),
    row<easeInBounce>("easeInBounce"),
    row<easeOutBounce>("easeOutBounce"),
    row<easeInOutBounce>("easeInOutBounce"),
    row<easeOutIn<easeOutBounce, easeInBounce>>("easeOutInBounce"),
});

constexpr auto Last = static_cast<std::int64_t>(EnumEasing::EASING_easeLast);
static_assert(Catalogue.size() == static_cast<std::size_t>(Last));

const Row& rowOf(EnumEasing type) noexcept {
    const auto raw = static_cast<std::uint64_t>(type);
    return raw < Catalogue.size() ? Catalogue[raw] : Catalogue[0];
}

} // namespace

std::optional<EnumEasing> easingFromRawValue(std::int64_t rawValue) noexcept {
    if (rawValue < 0 || rawValue > Last) return std::nullopt;
    return static_cast<EnumEasing>(rawValue);
}

std::string_view easingName(EnumEasing type) noexcept {
    return rowOf(type).name;
}

EasingFunction easingFunction(EnumEasing type) noexcept {
    return rowOf(type).function;
}

Animator::Action easingAction(EnumEasing type, bool plain) noexcept {
    return plain ? rowOf(type).plain : rowOf(type).overridable;
}

} // namespace tonewright

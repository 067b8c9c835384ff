// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The animator and the impulse: frames, values and the order of callbacks.
#include "platform/dispatch/RunLoop.hpp"
#include "tests/animator/AnimatorInspection.hpp"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

using namespace tonewright;
using Look = AnimatorInspection;
using enum EnumEasing;

namespace {

constexpr auto Max = std::numeric_limits<std::int64_t>::max();

// Writes down what an animator reports.
std::vector<std::string>& listen(Animator& animator, std::vector<std::string>& seen) {
    const auto text = [](float value) { return std::to_string(value).substr(0, 4); };
    animator.onAnimation = [&seen, text](Animator&, float value) { seen.push_back(text(value)); };
    animator.onFinished = [&seen, text](Animator&, float value) {
        seen.push_back("finished " + text(value));
    };
    animator.onLoop = [&seen](Animator&) { seen.push_back("loop"); };
    return seen;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(Animator, ReportsTheValueBeforeEachFrameAndArrivesExactly) {
    Lines seen;
    const auto animator = std::make_shared<Animator>();
    EXPECT_TRUE(animator->isFinished());
    animator->setup(0, 10, 4);
    EXPECT_FALSE(animator->isFinished());
    listen(*animator, seen);
    for (int i = 0; i < 7; ++i) animator->animate();
    EXPECT_EQ(seen, (Lines{"0.00", "2.50", "5.00", "7.50", "finished 10.0"}));
    EXPECT_TRUE(animator->isFinished());
    EXPECT_EQ(animator->getValue(), 10.0F);
}

TEST(Animator, LoopsForEverUntilStopped) {
    Lines seen;
    const auto animator = Animator::create(0, 1, 2);
    animator->looped = true;
    listen(*animator, seen);
    for (int i = 0; i < 7; ++i) animator->animate();
    EXPECT_EQ(seen, (Lines{"0.00", "0.50", "loop", "1.00", "0.50", "loop", "0.00"}));
    EXPECT_EQ(animator->getSourceValue(), 0.0F);
    EXPECT_EQ(animator->getDestinationValue(), 1.0F);
    animator->stop();
    EXPECT_FALSE(animator->looped);
    EXPECT_TRUE(animator->isFinished());
}

TEST(Animator, ShortCuts) {
    Lines seen;
    const auto still = Animator::create(3, 3, 10);
    listen(*still, seen);
    still->animate(), still->animate();
    EXPECT_EQ(seen, (Lines{"finished 3.00"}));

    const auto negative = Animator::create(0, 1, -5, 0.02F, EASING_easeOutBounce);
    EXPECT_EQ(Look::frames(*negative), 0);
    EXPECT_EQ(Look::frameCount(*negative), -5);
    negative->rewind(); // straight from now on, at the usual interval
    EXPECT_EQ(Look::frames(*negative), 0);
    EXPECT_EQ(Look::type(*negative), EASING_easeNone);
    EXPECT_EQ(Look::interval(*negative), 0.009F);

    seen.clear();
    const auto jumping = Animator::create(2, 8, 100);
    listen(*jumping, seen);
    jumping->undo();
    EXPECT_EQ(seen, (Lines{"2.00", "finished 8.00"}));
    EXPECT_EQ(Look::timer(*jumping), nullptr);
}

TEST(Animator, CountsTheLiving) {
    const std::int64_t before = Animator::classCount;
    auto animator = Animator::create(0, 1, 5);
    EXPECT_EQ(Animator::classCount, before + 1);
    animator->setType(EASING_easeInElastic);
    animator.reset();
    EXPECT_EQ(Animator::classCount, before);
}

TEST(Animator, RunsOnItsTimerAndIsKeptByIt) {
    auto animator = Animator::create(0, 1, 5, 0.002F);
    const std::weak_ptr<Animator> watch = animator;
    float arrived = 0;
    animator->onFinished = [&](Animator& a, float value) {
        EXPECT_EQ(Look::timer(a), nullptr);
        arrived = value;
    };
    animator->start();
    animator.reset();
    EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return watch.expired(); }, 20));
    EXPECT_EQ(arrived, 1.0F);
}

TEST(Animator, StartedTwiceMovesTwiceAsFast) {
    const auto animator = Animator::create(0, 1, Max / 2, 0.001F);
    int frames = 0;
    animator->onAnimation = [&](Animator&, float) { ++frames; };
    animator->start();
    const auto first = Look::timer(*animator);
    animator->start();
    EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return frames >= 20; }, 20));
    animator->stop(); // the second timer only
    EXPECT_TRUE(first->isValid());
    animator->setup(0, 1, 100);
    frames = 0;
    EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return frames >= 5; }, 20));
    first->invalidate();
}

// A subclass whose curve is reached wherever the animator selects it.
struct Springy final : Animator {
    float easeOutBack(std::int64_t, float, float, std::int64_t) override { return 42; }
    float easeInElastic(std::int64_t, float, float, std::int64_t) override { return 43; }
};

TEST(Animator, OverriddenCurvesTakeEffect) {
    const auto animator = std::make_shared<Springy>();
    const auto firstValue = [&](EnumEasing type, int ticks) {
        animator->setup(0, 1, 10, 0.009F, type);
        for (int i = 0; i < ticks; ++i) animator->animate();
        return animator->getValue();
    };
    EXPECT_EQ(firstValue(EASING_easeOutBack, 1), 42.0F);
    EXPECT_EQ(firstValue(EASING_easeOutInBack, 1), 42.0F);
    EXPECT_EQ(firstValue(EASING_easeOutInElastic, 7), 43.0F);
    EXPECT_EQ(firstValue(EASING_easeInBack, 1), easingFunction(EASING_easeInBack)(1, 0, 1, 10));
}

TEST(AnimatorDeathTest, CountersAtTheirEnd) {
    EXPECT_DEATH(
        {
            Animator::classCount = Max;
            (void)std::make_shared<Animator>();
        },
        "number of animators");
    EXPECT_DEATH(
        {
            Animator animator;
            Look::action(animator) = nullptr;
            animator.setup(0, 1, 5);
            Look::action(animator) = nullptr;
            animator.animate();
        },
        "Unexpectedly found nil");
    EXPECT_DEATH(
        {
            Animator animator;
            animator.start();
        },
        "owned by a shared pointer");
    EXPECT_DEATH(
        {
            const auto impulse = Impulse::create(1, 1, 0.009F, 1);
            Look::step(*impulse) = Max;
            impulse->animate();
        },
        "overflow");
}

TEST(Impulse, CoastsToRest) {
    const auto impulse = Impulse::create(-3, 1);
    EXPECT_EQ(Look::frames(*impulse), 0);
    EXPECT_FALSE(impulse->isFinished());
    std::vector<float> values;
    float last = 0;
    impulse->onAnimation = [&](Impulse& i) { values.push_back(i.getValue()); };
    impulse->onFinished = [&](Impulse& i) { last = i.getValue(); };
    int ticks = 0;
    for (; !impulse->isFinished(); ++ticks) impulse->animate();
    EXPECT_EQ(ticks, 25);
    ASSERT_EQ(values.size(), 24U);
    EXPECT_EQ(values[0], 0.75F);
    EXPECT_EQ(values[1], 1.3125F);
    EXPECT_EQ(last, values.back());
    EXPECT_NEAR(last, 3, 0.01);
    EXPECT_EQ(impulse->getValue(), 0.0F);
    EXPECT_EQ(impulse->getSourceValue(), 1.0F);
}

TEST(Impulse, WallsTakeTheStepBack) {
    std::string seen;
    const auto impulse = std::make_shared<Impulse>();
    Look::value(*impulse) = 0.5F;
    impulse->setup(1, 1);
    impulse->setMinMax(true, 0, 1);
    impulse->onCollision = [&](Impulse& i) {
        seen += "wall " + std::to_string(i.getValue()).substr(0, 3) + ",";
    };
    impulse->onAnimation = [&](Impulse&) { seen += "moved,"; };
    impulse->animate();
    EXPECT_EQ(Look::amount(*impulse), -0.75F);
    EXPECT_EQ(seen, "wall 0.5,moved,");
    impulse->setup(1, 1, 0.009F, 0.5F); // ends exactly on the wall, which counts
    seen.clear();
    impulse->animate();
    EXPECT_EQ(seen, "wall 0.5,moved,");

    const auto lost = Impulse::create(1, std::numeric_limits<float>::quiet_NaN());
    lost->animate();
    EXPECT_EQ(Look::step(*lost), 1); // a velocity that is no number still moves
}

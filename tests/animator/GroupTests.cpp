// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Stack, chain and sequencer: which member moves on which tick, on timers and at sizes where searching would
// show.
#include "platform/dispatch/RunLoop.hpp"
#include "tests/animator/AnimatorInspection.hpp"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <thread>
#include <vector>

using namespace tonewright;
using Look = AnimatorInspection;
using Animators = std::vector<std::shared_ptr<Animator>>;

namespace {

constexpr auto Max = std::numeric_limits<std::int64_t>::max();

Animators make(std::size_t count, std::int64_t frames = 2) {
    Animators result;
    for (std::size_t i = 0; i < count; ++i) result.push_back(Animator::create(0, 1, frames));
    return result;
}

// Far above what the engine needs, far below what searching every member for every member takes.
class Brisk {
  public:
    ~Brisk() { EXPECT_LT(std::chrono::steady_clock::now() - _begin, std::chrono::seconds(8)); }

  private:
    std::chrono::steady_clock::time_point _begin = std::chrono::steady_clock::now();
};
constexpr std::size_t Many = 60'000;

} // namespace

TEST(Stack, DropsMembersAsTheyArrive) {
    const auto stack = std::make_shared<AnimatorStack>();
    const auto members = make(2);
    members[1]->setup(0, 1, 4);
    std::vector<std::pair<int, std::int64_t>> removed; // tick, count inside the callback
    int tick = 0, finishedOn = 0;
    stack->onRemovedItem = [&](AnimatorStack& s, Animator&) { removed.emplace_back(tick, s.getCount()); };
    stack->onFinished = [&](AnimatorStack&) { finishedOn = tick; };
    stack->add(nullptr);
    for (const auto& m : members) stack->add(m);
    stack->add(std::make_shared<Animator>()); // idle: skipped, and kept to the end
    EXPECT_EQ(stack->getCount(), 3);
    for (tick = 1; tick <= 6; ++tick) stack->animate();
    EXPECT_EQ(removed, (std::vector<std::pair<int, std::int64_t>>{{3, 2}, {5, 1}}));
    EXPECT_EQ(finishedOn, 6);
    EXPECT_EQ(stack->getCount(), 0);
}

TEST(Stack, RunsOnItsTimerOnAPlainThread) {
    std::thread([] {
        auto stack = std::make_shared<AnimatorStack>();
        const std::weak_ptr<AnimatorStack> watch = stack;
        stack->add(Animator::create(0, 1, 3));
        stack->interval = 0.001F;
        stack->start();
        stack.reset(); // the timer keeps it
        EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return watch.expired(); }, 20));
    }).join();
}

TEST(StackDeathTest, ListChangedUnderAFinishingMember) {
    EXPECT_DEATH(
        {
            const auto stack = std::make_shared<AnimatorStack>();
            const auto member = Animator::create(0, 1, 0);
            member->onFinished = [&](Animator&, float) { stack->stop(); };
            stack->add(member);
            stack->animate();
        },
        "not in its stack");
}

TEST(Chain, PlaysInTurn) {
    const auto chain = std::make_shared<AnimatorChain>();
    const auto members = make(3);
    std::vector<std::size_t> order;
    int finished = 0;
    chain->onAnimation = [&](AnimatorChain&, Animator& a) {
        order.push_back(static_cast<std::size_t>(
            std::find_if(members.begin(), members.end(), [&](auto& m) { return m.get() == &a; }) -
            members.begin()));
    };
    chain->onFinished = [&](AnimatorChain& c) {
        ++finished;
        EXPECT_EQ(c.getCurrentIndex(), 3);
    };
    for (const auto& m : members) chain->add(m);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(chain->getCurrentItem(), chain->getCurrentIndex() == 1 ? members[1] : nullptr);
        chain->animate();
    }
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 0, 0, 1, 1, 1, 2, 2, 2}));
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(chain->getCurrentIndex(), 0);

    order.clear();
    for (int i = 0; i < 3; ++i) chain->animate(); // all have played: passed over, one tick each
    EXPECT_EQ(order, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(finished, 2);

    chain->onFinished = nullptr;
    chain->setBackwards(true);
    members[0]->rewind();
    chain->animate(); // ends at once: index 0 counts as the end
    EXPECT_EQ(Look::step(*members[0]), 1);
    EXPECT_EQ(Look::frames(*members[0]), 2);
}

TEST(Chain, AsyncStartsOnePerTick) {
    const auto chain = std::make_shared<AnimatorChain>();
    const auto members = make(3);
    for (const auto& m : members) chain->add(m);
    chain->async = true;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Look::timer(*members[static_cast<std::size_t>(i)]), nullptr);
        chain->animate();
        EXPECT_NE(Look::timer(*members[static_cast<std::size_t>(i)]), nullptr);
    }
    EXPECT_EQ(chain->getCurrentIndex(), 0);
    int arrived = 0;
    for (const auto& m : members) m->onFinished = [&](Animator&, float) { ++arrived; };
    EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return arrived == 3; }, 20));
}

TEST(Chain, EmptyOneSaysSoOnEveryTick) {
    const auto chain = std::make_shared<AnimatorChain>();
    testing::internal::CaptureStdout();
    chain->interval = 0.001F;
    chain->start();
    platform::RunLoop::current().runFor(0.05);
    chain->stop();
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed.rfind("WARNUNG: Es sind keine Animator Objekte definiert.\n"
                            "WARNUNG: Es sind keine Animator Objekte definiert.\n",
                            0),
              0U);
}

TEST(ChainDeathTest, RemovingAStranger) {
    EXPECT_DEATH(std::make_shared<AnimatorChain>()->remove(Animator::create(0, 1, 1)), "not in the chain");
}

TEST(Chain, RemovalByIdentityAmongManyDuplicates) {
    const auto chain = std::make_shared<AnimatorChain>();
    const auto animators = make(60);
    Animators expected;
    std::mt19937 random(5);
    for (int i = 0; i < 900; ++i) expected.push_back(animators[random() % animators.size()]);
    for (const auto& a : expected) chain->add(a);
    while (!expected.empty()) {
        const auto item = expected[random() % expected.size()];
        chain->remove(item);
        expected.erase(std::find(expected.begin(), expected.end(), item));
        ASSERT_EQ(Look::members(*chain), expected);
        if (random() % 8 == 0) {
            expected.push_back(animators[random() % animators.size()]);
            chain->add(expected.back());
        }
    }
}

TEST(Sequencer, PlaysItsTimeLineOnATimer) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    const auto a = Animator::create(0, 1, 3);
    const auto b = Animator::create(0, 1, 2);
    std::vector<std::pair<char, std::int64_t>> seen; // who, frame
    a->onAnimation = [&](Animator&, float) { seen.emplace_back('a', sequencer->getCurrentFrame()); };
    a->onFinished = [&](Animator&, float) { seen.emplace_back('A', sequencer->getCurrentFrame()); };
    b->onAnimation = [&](Animator&, float) { seen.emplace_back('b', sequencer->getCurrentFrame()); };
    b->onFinished = [&](Animator&, float) { seen.emplace_back('B', sequencer->getCurrentFrame()); };
    bool finished = false;
    sequencer->onFinished = [&](AnimationSequencer& s) {
        finished = true;
        EXPECT_EQ(s.getCurrentFrame(), 6);
    };
    sequencer->add(b, 4);
    sequencer->add(a, 2);
    EXPECT_EQ(Look::maxFrames(*sequencer), 6);
    sequencer->interval = 0.001F;
    sequencer->start();
    EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return finished; }, 20));
    EXPECT_EQ(seen, (std::vector<std::pair<char, std::int64_t>>{
                        {'a', 2}, {'a', 3}, {'a', 4}, {'b', 4}, {'A', 5}, {'b', 5}, {'B', 6}}));
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);
    sequencer->onFinished = nullptr;
}

TEST(Sequencer, MemberAtFrameZeroNeverArrives) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    const auto member = Animator::create(0, 1, 4);
    int frames = 0, arrivals = 0, ends = 0;
    member->onAnimation = [&](Animator&, float) { ++frames; };
    member->onFinished = [&](Animator&, float) { ++arrivals; };
    sequencer->onFinished = [&](AnimationSequencer&) { ++ends; };
    sequencer->add(member, 0);
    for (int i = 0; i < 4; ++i) Look::advance(*sequencer);
    EXPECT_EQ(frames, 4);
    EXPECT_EQ(arrivals, 0);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(sequencer->getCurrentCount(), 1);
}

TEST(Sequencer, OrderSeekPauseAndLength) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    const auto m = make(3);
    sequencer->add(m[0], 10);
    sequencer->add(m[1], 5);
    sequencer->add(m[2], 5);
    EXPECT_EQ(Look::members(*sequencer), (Animators{m[1], m[2], m[0]}));
    EXPECT_EQ(Look::maxFrames(*sequencer), 12);
    sequencer->remove(m[0]);
    EXPECT_EQ(Look::maxFrames(*sequencer), 12); // never lowered
    sequencer->add(m[0], 3);
    sequencer->seek(4);
    EXPECT_EQ(sequencer->getCurrentIndex(), 1);
    EXPECT_TRUE(m[0]->isFinished());
    EXPECT_FALSE(m[1]->isFinished());
    sequencer->pause();
    for (int i = 0; i < 5; ++i) Look::advance(*sequencer);
    EXPECT_EQ(sequencer->getCurrentFrame(), 9);
    EXPECT_EQ(sequencer->getCurrentCount(), 0);
    sequencer->continue_();
    Look::advance(*sequencer);
    EXPECT_EQ(sequencer->getCurrentCount(), 2); // late
    sequencer->seek(13);
    EXPECT_EQ(sequencer->getCurrentFrame(), 0);

    const auto idle = std::make_shared<AnimationSequencer>();
    idle->add(std::make_shared<Animator>(), 3);
    EXPECT_EQ(Look::maxFrames(*idle), 2);
    testing::internal::CaptureStdout();
    idle->add(nullptr, 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "FEHLER: Das Animator Objekt ist ungültig.\n");
}

TEST(Sequencer, LengthFollowsMembersThatWereSetUpAgain) {
    // Measuring is left to the subclass's mood: what was added meanwhile is measured with the rest.
    struct Moody : AnimationSequencer {
        bool measures = true;
        void calculateFrames() override {
            if (measures) AnimationSequencer::calculateFrames();
        }
    };
    const auto sequencer = std::make_shared<Moody>();
    const auto m = make(3);
    sequencer->measures = false;
    sequencer->add(m[0], 50);
    sequencer->add(m[1], 3);
    EXPECT_EQ(Look::maxFrames(*sequencer), 0);
    sequencer->measures = true;
    sequencer->calculateFrames();
    EXPECT_EQ(Look::maxFrames(*sequencer), 52);
    m[1]->setup(0, 1, 80);
    sequencer->remove(nullptr); // measures, too
    EXPECT_EQ(Look::maxFrames(*sequencer), 83);

    const auto late = std::make_shared<AnimationSequencer>();
    const auto idle = std::make_shared<Animator>();
    late->add(idle, 20);
    idle->setup(0, 1, 5);
    idle->stop();
    late->calculateFrames();
    EXPECT_EQ(Look::maxFrames(*late), 19);
    idle->onAnimation = [&](Animator&, float) { late->calculateFrames(); }; // sees the one frame of `undo`
    idle->undo();
    EXPECT_EQ(Look::maxFrames(*late), 21);
}

TEST(SequencerDeathTest, StrangersPositionsAndOverflows) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    EXPECT_DEATH(sequencer->remove(Animator::create(0, 1, 1)), "not in the sequencer");
    EXPECT_DEATH(sequencer->add(Animator::create(0, 1, 10), Max - 5), "overflow");
    EXPECT_DEATH(
        {
            const auto m = make(3);
            for (const auto& a : m) sequencer->add(a, 1);
            sequencer->seek(2); // position 3
            sequencer->remove(m[0]);
            Look::advance(*sequencer);
        },
        "behind its last member");
    EXPECT_DEATH(
        {
            Look::currentFrame(*sequencer) = Max;
            Look::advance(*sequencer);
        },
        "overflow");
}

TEST(Many, FinishTogetherAlternatelyAndInTwoStacks) {
    const Brisk brisk;
    const auto stack = std::make_shared<AnimatorStack>();
    const auto other = std::make_shared<AnimatorStack>();
    const auto members = make(Many, 1);
    for (std::size_t i = 0; i < Many; i += 2) members[i]->setup(0, 1, 3);
    for (const auto& m : members) stack->add(m), other->add(m); // no single owner to trust
    std::int64_t live = static_cast<std::int64_t>(Many);
    stack->onRemovedItem = [&](AnimatorStack& s, Animator&) { EXPECT_EQ(s.getCount(), --live); };
    for (int i = 0; i < 4; ++i) stack->animate();
    EXPECT_EQ(live, 0);
    other->animate();
    EXPECT_EQ(other->getCount(), 0);
}

TEST(Many, TimeLineForwardsBackwardsAndShared) {
    const Brisk brisk;
    const auto first = std::make_shared<AnimationSequencer>();
    const auto second = std::make_shared<AnimationSequencer>();
    const auto members = make(Many);
    const auto count = static_cast<std::int64_t>(Many);
    for (std::int64_t i = 0; i < count; ++i) first->add(members[static_cast<std::size_t>(i)], i);
    for (std::int64_t i = count - 1; i >= 0; --i) second->add(members[static_cast<std::size_t>(i)], i / 2);
    EXPECT_EQ(first->getCount(), count);
    EXPECT_EQ(Look::maxFrames(*first), count + 1);
    EXPECT_EQ(Look::maxFrames(*second), count / 2 - 1 + 2);
    EXPECT_EQ(Look::members(*second).front(), members[1]); // equal start frames: as added
    Look::advance(*second);
    EXPECT_EQ(second->getCurrentCount(), 4);

    auto shuffled = members;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(3));
    for (const auto& m : shuffled) second->remove(m);
    EXPECT_EQ(second->getCount(), 0);
}

TEST(Many, StartOnOneTickInTwoSequencers) {
    const Brisk brisk;
    const auto first = std::make_shared<AnimationSequencer>();
    const auto second = std::make_shared<AnimationSequencer>();
    for (const auto& m : make(Many, 10)) first->add(m, 1), second->add(m, 1);
    for (int i = 0; i < 3; ++i) Look::advance(*first), Look::advance(*second);
    EXPECT_EQ(first->getCurrentCount(), static_cast<std::int64_t>(Many));
    EXPECT_EQ(second->getCurrentCount(), static_cast<std::int64_t>(Many));
}

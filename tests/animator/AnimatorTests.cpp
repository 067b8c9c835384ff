// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests cases that the random scripts do not reach: impulses, running timers, the messages of fatal errors,
// overridden lengths, and groups so large that a linear search would be noticeable.
#include "platform/dispatch/RunLoop.hpp"
#include "tests/animator/AnimatorInspection.hpp"
#include "tests/support/testing.hpp"

using namespace tonewright;
using Look = AnimatorInspection;
using Animators = std::vector<std::shared_ptr<Animator>>;
using enum EnumEasing;

namespace {

constexpr auto Max = std::numeric_limits<std::int64_t>::max();

Animators make(std::int64_t count, std::int64_t frames = 2) {
    Animators result;
    while (std::ssize(result) < count) result.push_back(Animator::create(0, 1, frames));
    return result;
}

template <class Group>
void place(Group& group, const std::shared_ptr<Animator>& member) {
    if constexpr (requires { group.add(member, 2); }) {
        group.add(member, 2);
    } else {
        group.add(member);
    }
}

// Returns a group with one member, whose timer fires after a millisecond.
template <class Group>
std::shared_ptr<Group> filled(const std::shared_ptr<Animator>& member) {
    auto group = std::make_shared<Group>();
    place(*group, member);
    group->interval = 0.001F;
    return group;
}

// Starts `object` and releases it. The timer must keep the object alive until it has finished, and no longer.
template <class Object>
void expectToRunToItsEnd(std::shared_ptr<Object> object) {
    const std::weak_ptr<Object> watch = object;
    int arrivals = 0;
    object->onFinished = [&](auto&&...) { ++arrivals; };
    object->start();
    object.reset();
    EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return watch.expired(); }, 20));
    EXPECT_EQ(arrivals, 1);
}

// Limits the test's duration: far above what the engine needs, far below what a linear search per member
// takes.
class Brisk {
  public:
    ~Brisk() { EXPECT_LT(std::chrono::steady_clock::now() - _begin, std::chrono::seconds(8)); }

  private:
    std::chrono::steady_clock::time_point _begin = std::chrono::steady_clock::now();
};
constexpr std::int64_t Many = 200'000;

} // namespace

TEST(Impulse, CoastsToRestAndBouncesOffItsBounds) {
    for (const bool bounces : {false, true}) {
        const auto impulse = Impulse::create(-3, 1);
        impulse->setMinMax(bounces, 0, 2);
        std::vector<float> values, ends;
        int collisions = 0;
        impulse->onAnimation = [&](Impulse& i) { values.push_back(i.getValue()); };
        impulse->onCollision = [&](Impulse&) { ++collisions; };
        impulse->onFinished = [&](Impulse& i) { ends.push_back(i.getValue()); };
        for (int i = 0; i < 30; ++i) impulse->animate();
        ASSERT_EQ(values.size(), 24U);
        EXPECT_EQ(values[0], 0.75F);
        EXPECT_EQ(values[1], 1.3125F);
        EXPECT_EQ(values[3], bounces ? 1.734375F : 2.05078125F);
        EXPECT_NEAR(values.back(), bounces ? 0.785 : 3, 0.01);
        EXPECT_EQ(collisions, bounces ? 1 : 0);
        EXPECT_EQ(ends,
                  (std::vector<float>{values.back(), 0, 0, 0, 0, 0})); // at rest, and on every later tick
        EXPECT_TRUE(impulse->isFinished() && impulse->getValue() == 0);
    }
}

TEST(Timers, KeepWhatTheyRunUntilItsEnd) {
    expectToRunToItsEnd(Animator::create(0, 1, 5, 0.002F));
    expectToRunToItsEnd(Impulse::create(-3, 1, 0.001F));
    const auto member = Animator::create(0, 1, 3);
    expectToRunToItsEnd(filled<AnimatorStack>(member));
    member->rewind();
    expectToRunToItsEnd(filled<AnimatorChain>(member));
    member->rewind();
    std::thread([&] { expectToRunToItsEnd(filled<AnimationSequencer>(member)); }).join();
    EXPECT_TRUE(member->isFinished());
}

TEST(FatalDeathTest, SaysWhatIsWrong) {
    const auto sequencer = std::make_shared<AnimationSequencer>();
    const auto stack = std::make_shared<AnimatorStack>();
    const auto animator = Animator::create(0, 1, 10);
    const std::vector<std::pair<const char*, std::function<void()>>> cases = {
        {"number of animators", [] { Animator::classCount = Max, make(1); }},
        {"Unexpectedly found nil", [&] { Look::action(*animator) = nullptr, animator->animate(); }},
        {"owned by a shared pointer", [] { Animator().start(); }},
        {"overflow",
         [] {
             const auto impulse = Impulse::create(1, 1, 0.009F, 1);
             Look::step(*impulse) = Max;
             impulse->animate();
         }},
        {"not in its stack",
         [&] {
             animator->setup(0, 1, 0);
             animator->onFinished = [&](Animator&, float) { stack->stop(); };
             stack->add(animator);
             stack->animate();
         }},
        {"not in the chain", [&] { std::make_shared<AnimatorChain>()->remove(animator); }},
        {"not in the sequencer", [&] { sequencer->remove(animator); }},
        {"overflow", [&] { sequencer->add(animator, Max - 5); }},
        {"behind its last member",
         [&] {
             const auto members = make(3);
             for (const auto& m : members) sequencer->add(m, 1);
             sequencer->seek(2); // position 3
             sequencer->remove(members[0]);
             sequencer->advance();
         }},
        {"overflow", [&] { Look::currentFrame(*sequencer) = Max, sequencer->advance(); }},
    };
    for (const auto& [message, act] : cases) EXPECT_DEATH(act(), message);
}

// Removing an animator that is in a group several times removes its first entry. There are so many removals
// that the group builds its index.
TEST(Duplicates, AreRemovedFromTheFirstOn) {
    const auto removeAll = [](auto group) {
        const auto animators = make(60);
        Animators expected;
        std::mt19937 random(5);
        const auto add = [&] {
            place(*group, expected.emplace_back(animators[random() % animators.size()]));
        };
        for (int i = 0; i < 900; ++i) add();
        while (!expected.empty()) {
            const auto item = expected[random() % expected.size()];
            group->remove(item);
            expected.erase(std::find(expected.begin(), expected.end(), item));
            if (random() % 8 == 0) add();
            if (random() % 32 != 0) continue; // reading the members removes the gaps and discards the index
            ASSERT_EQ(Look::members(*group), expected);
        }
    };
    removeAll(std::make_shared<AnimatorChain>());
    removeAll(std::make_shared<AnimationSequencer>());
}

TEST(Sequencer, MeasuresAlsoWhatCameWhileASubclassDidNotMeasure) {
    struct Moody : AnimationSequencer {
        bool measures = false;
        void calculateFrames() override {
            if (measures) AnimationSequencer::calculateFrames();
        }
    };
    const auto sequencer = std::make_shared<Moody>();
    const auto m = make(2);
    sequencer->add(m[0], 50);
    sequencer->add(m[1], 3);
    sequencer->measures = true;
    sequencer->calculateFrames();
    EXPECT_EQ(Look::maxFrames(*sequencer), 52);
    m[1]->setup(0, 1, 80);
    sequencer->remove(nullptr); // also recalculates the length
    EXPECT_EQ(Look::maxFrames(*sequencer), 83);
}

TEST(Many, FinishTogetherAlternatelyAndInTwoStacks) {
    const Brisk brisk;
    const auto stack = std::make_shared<AnimatorStack>(), other = std::make_shared<AnimatorStack>();
    const auto members = make(Many, 1);
    for (std::size_t i = 0; i < members.size(); i += 2) members[i]->setup(0, 1, 3);
    for (const auto& m : members) stack->add(m), other->add(m); // each member belongs to two groups
    std::int64_t live = Many;
    stack->onRemovedItem = [&](AnimatorStack& s, Animator&) { EXPECT_EQ(s.getCount(), --live); };
    for (int i = 0; i < 4; ++i) stack->animate();
    other->animate();
    EXPECT_EQ(live + other->getCount(), 0);
}

TEST(Many, InTwoSequencersOneAfterTheOtherBackwardsAndAllOnOneTick) {
    const Brisk brisk;
    const auto first = std::make_shared<AnimationSequencer>(),
               second = std::make_shared<AnimationSequencer>();
    auto members = make(Many, 10);
    for (std::int64_t i = 0; i < Many; ++i) first->add(members[static_cast<std::size_t>(i)], i);
    for (std::int64_t i = Many - 1; i >= 0; --i) second->add(members[static_cast<std::size_t>(i)], i / 2);
    EXPECT_EQ(Look::members(*second).front(), members[1]); // equal start frames: in the order of addition
    for (const auto& m : members) second->remove(m);
    for (const auto& m : members) second->add(m, 1);
    for (int i = 0; i < 3; ++i) second->advance();
    EXPECT_EQ(second->getCurrentCount(), Many);
    std::shuffle(members.begin(), members.end(), std::mt19937(3));
    for (const auto& m : members) first->remove(m), second->remove(m);
    EXPECT_EQ(first->getCount() + second->getCount(), 0);
}

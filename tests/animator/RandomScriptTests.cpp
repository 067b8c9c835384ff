// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs thousands of random sequences of all operations on the engine and on the literal model: all fields
// must match exactly, and the same scripts must end in fatal errors.
#include "platform/foundation/console.hpp"
#include "tests/animator/LiteralModel.hpp"
#include "tests/animator/Script.hpp"
#include "tests/support/testing.hpp"

namespace {

using scripted::Plan;
using scripted::Script;
using tonewright::test::CapturedOutput;

struct EngineWorld {
    using Animator = tonewright::Animator;
    using AnimatorStack = tonewright::AnimatorStack;
    using AnimatorChain = tonewright::AnimatorChain;
    using AnimationSequencer = tonewright::AnimationSequencer;
    static std::int64_t classCount() { return Animator::classCount; }
    static void say(const std::string& line) { platform::print(line); } // in order with the engine's lines
};

struct LiteralWorld {
    using Animator = literal::Animator;
    using AnimatorStack = literal::AnimatorStack;
    using AnimatorChain = literal::AnimatorChain;
    using AnimationSequencer = literal::AnimationSequencer;
    static std::int64_t classCount() { return Animator::classCount; }
    static void say(const std::string& line) { literal::print(line); }
};

using Lines = std::vector<std::string>;

Lines runLiterally(const Plan& plan, bool& isFatal) {
    {
        Script<LiteralWorld> script(plan);
        try {
            script.run();
        } catch (const literal::Fatal&) {
            isFatal = true;
        }
    }
    literal::runLoop.clear();
    return std::exchange(literal::lines, {});
}

// Runs the plan on a new thread, because the end of a thread releases the timers that scripts leave running.
Lines runEngine(const Plan& plan) {
    CapturedOutput output;
    std::thread([&] { Script<EngineWorld>(plan).run(); }).join();
    return output.take();
}

// Runs the plan in a child process that is expected to abort; returns the lines printed until then.
Lines runEngineToItsEnd(const Plan& plan) {
    CapturedOutput output;
    EXPECT_EXIT(Script<EngineWorld>(plan).run(), testing::KilledBySignal(SIGABRT), "");
    return output.take();
}

void compare(const Lines& expected, const Lines& actual) {
    const std::size_t common = std::min(expected.size(), actual.size());
    for (std::size_t i = 0; i < common; ++i) {
        ASSERT_EQ(expected[i], actual[i])
            << "line " << i << ", after " << (i > 0 ? expected[i - 1] : "nothing");
    }
    ASSERT_EQ(expected.size(), actual.size());
}

// Runs a script for each of `count` seeds; returns how many ended in a fatal error.
int runSeeds(Plan plan, std::uint64_t first, std::uint64_t count) {
    int fatal = 0;
    for (plan.seed = first; plan.seed < first + count && !testing::Test::HasFailure(); ++plan.seed) {
        SCOPED_TRACE("seed " + std::to_string(plan.seed));
        bool isFatal = false;
        const Lines expected = runLiterally(plan, isFatal);
        compare(expected, isFatal ? runEngineToItsEnd(plan) : runEngine(plan));
        if (isFatal) ++fatal;
    }
    return fatal;
}

} // namespace

TEST(RandomScripts, FewAnimatorsInManyPlaces) {
    EXPECT_GT(runSeeds({.steps = 120, .animators = 4, .misuse = true}, 1, 1500), 10);
}

TEST(RandomScripts, ManyAnimatorsAndLongLives) {
    runSeeds({.steps = 400, .animators = 30}, 100'000, 200);
    runSeeds({.steps = 4000, .animators = 60}, 200'000, 12);
}

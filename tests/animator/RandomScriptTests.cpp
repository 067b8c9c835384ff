// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Thousands of random sequences of every operation, run by the engine and by the literal model: both must do
// the same, to the last field, and end in the same fatal errors.
#include "tests/animator/LiteralModel.hpp"
#include "tests/animator/Script.hpp"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using scripted::Plan;
using scripted::Script;

// A file in memory that stands in for a descriptor.
class Capture {
  public:
    explicit Capture(int descriptor)
        : _descriptor(descriptor)
        , _saved(::dup(descriptor))
        , _file(::memfd_create("capture", 0)) {
        ::dup2(_file, _descriptor);
    }
    ~Capture() {
        ::dup2(_saved, _descriptor);
        ::close(_saved);
        ::close(_file);
    }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    std::string take() {
        std::string result;
        std::array<char, 4096> part{};
        ssize_t got = 0;
        while ((got = ::pread(_file, part.data(), part.size(), _taken)) > 0) {
            result.append(part.data(), static_cast<std::size_t>(got));
            _taken += got;
        }
        return result;
    }

  private:
    int _descriptor, _saved, _file;
    off_t _taken = 0;
};

struct EngineWorld {
    using Animator = tonewright::Animator;
    using AnimatorStack = tonewright::AnimatorStack;
    using AnimatorChain = tonewright::AnimatorChain;
    using AnimationSequencer = tonewright::AnimationSequencer;
    using Impulse = tonewright::Impulse;
    static std::int64_t classCount() { return Animator::classCount; }
    inline static Capture* output = nullptr;
    static std::string takePrinted() { return output->take(); }
};

struct LiteralWorld {
    using Animator = literal::Animator;
    using AnimatorStack = literal::AnimatorStack;
    using AnimatorChain = literal::AnimatorChain;
    using AnimationSequencer = literal::AnimationSequencer;
    using Impulse = literal::Impulse;
    static std::int64_t classCount() { return Animator::classCount; }
    static std::string takePrinted() { return std::exchange(literal::printed, {}); }
};

struct Outcome {
    std::vector<std::string> lines;
    bool fatal = false;
};

Outcome runLiterally(const Plan& plan) {
    Outcome outcome;
    {
        Script<LiteralWorld> script(plan,
                                    [&](std::string line) { outcome.lines.push_back(std::move(line)); });
        try {
            script.run();
        } catch (const literal::Fatal&) {
            outcome.fatal = true;
        }
    }
    literal::runLoop.clear();
    literal::printed.clear();
    return outcome;
}

// On a thread of its own, whose end releases the timers that were left running on purpose.
std::vector<std::string> runEngine(const Plan& plan) {
    std::vector<std::string> lines;
    Capture output(STDOUT_FILENO);
    EngineWorld::output = &output;
    std::thread([&] {
        Script<EngineWorld> script(plan, [&](std::string line) { lines.push_back(std::move(line)); });
        script.run();
    }).join();
    EngineWorld::output = nullptr;
    return lines;
}

// In a process of its own, which is expected to abort; gives what was written down until then.
std::vector<std::string> runEngineToItsEnd(const Plan& plan, bool& aborted) {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        Capture output(STDOUT_FILENO);
        EngineWorld::output = &output;
        Script<EngineWorld> script(plan, [&](std::string line) {
            line += '\0';
            if (::write(ends[1], line.data(), line.size()) < 0) ::_exit(1);
        });
        script.run();
        ::_exit(0);
    }
    ::close(ends[1]);
    std::string all;
    std::array<char, 65536> part{};
    ssize_t got = 0;
    while ((got = ::read(ends[0], part.data(), part.size())) > 0)
        all.append(part.data(), static_cast<std::size_t>(got));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    aborted = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < all.size();) {
        const std::size_t end = all.find('\0', begin);
        lines.push_back(all.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

void compare(const std::vector<std::string>& expected, const std::vector<std::string>& actual) {
    const std::size_t common = std::min(expected.size(), actual.size());
    for (std::size_t i = 0; i < common; ++i)
        ASSERT_EQ(expected[i], actual[i])
            << "line " << i << ", after " << (i > 0 ? expected[i - 1] : "nothing");
    ASSERT_EQ(expected.size(), actual.size());
}

void runSeed(const Plan& plan, int& fatal) {
    SCOPED_TRACE("seed " + std::to_string(plan.seed));
    const Outcome expected = runLiterally(plan);
    if (!expected.fatal) return compare(expected.lines, runEngine(plan));
    ++fatal;
    bool aborted = false;
    const auto lines = runEngineToItsEnd(plan, aborted);
    ASSERT_TRUE(aborted);
    compare(expected.lines, lines);
}

// Runs a script for each of many seeds; gives how many ended fatally.
int runSeeds(Plan plan, std::uint64_t first, std::uint64_t count) {
    int fatal = 0;
    for (plan.seed = first; plan.seed < first + count && !testing::Test::HasFatalFailure(); ++plan.seed)
        runSeed(plan, fatal);
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

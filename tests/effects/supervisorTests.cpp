// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares Supervisor with a model that is written without its table, through random histories.
#include "platform/effects/outside/Supervisor.hpp"

#include "tests/support/testing.hpp"

#include <random>
#include <vector>

using namespace platform::lv2;
using namespace std::chrono_literals;

namespace {

using Event = Supervisor::Event;
using Time = Supervisor::Time;

// What a person would expect: counts which processes there are and when processes ended.
struct Model {
    bool hasMain = true, hasSpare = false, isStarting = false, isOut = false, isLarge = false;
    std::vector<Time> ends;
    Time mainSince, spareSince{};
    Supervisor::Settings settings;
    std::uint64_t startedWith = 0;
    int shortLives = 0;
    bool wantsDefaults = false;

    void forget(Time now) {
        std::erase_if(ends, [now](Time end) { return now - end > 60s; });
    }
    int giveUp() {
        if (hasMain || isStarting || isOut || ends.size() < 5) return 0;
        isOut = true;
        return Supervisor::Outage;
    }
    int noteEnd(Time now, bool wasShort) {
        forget(now);
        ends.push_back(now);
        shortLives = wasShort ? shortLives + 1 : 0;
        if (shortLives >= 2) wantsDefaults = true;
        return Supervisor::Warn | giveUp();
    }
    int mainEnds(Time now) {
        if (!hasMain) return 0;
        const bool wasShort = now - mainSince < 1s, hadSpare = hasSpare;
        hasMain = hadSpare;
        hasSpare = false;
        mainSince = spareSince;
        return Supervisor::NoteLoss | (hadSpare ? Supervisor::Promote : 0) | noteEnd(now, wasShort);
    }
    int spareEnds(Time now) {
        if (!hasSpare) return 0;
        hasSpare = false;
        return noteEnd(now, now - spareSince < 1s);
    }
    int startEnds(Time now, bool isGood) {
        if (!isStarting) return 0;
        isStarting = false;
        if (!isGood) return noteEnd(now, true);
        if (startedWith != settings.generation) return Supervisor::Drop | giveUp();
        if (hasMain) {
            hasSpare = true;
            spareSince = now;
            return Supervisor::PutSpare;
        }
        hasMain = true;
        mainSince = now;
        isLarge = false;
        return Supervisor::PutMain;
    }
    int reload() {
        if (hasMain || isStarting) return 0;
        isOut = wantsDefaults = false;
        ends.clear();
        shortLives = 0;
        return 0;
    }
    int tick(Time now) {
        if (hasMain) forget(now);
        const bool wantsSpare = settings.isAllocated && !settings.isOffline && !isLarge;
        if (isStarting || isOut || (hasMain && (hasSpare || !wantsSpare)) || ends.size() >= 5) return 0;
        const std::vector<std::chrono::seconds> waits{0s, 0s, 1s, 4s, 15s};
        if (!ends.empty() && now < ends.back() + waits[ends.size()]) return 0;
        isStarting = true;
        startedWith = settings.generation;
        return Supervisor::Start;
    }
    int measure(bool large) {
        isLarge = isLarge || large;
        if (!large || !hasSpare) return 0;
        hasSpare = false;
        return Supervisor::DropSpare;
    }
    int handle(Event event, Time now) {
        switch (event) {
        case Event::MainEnded:
            return mainEnds(now);
        case Event::SpareEnded:
            return spareEnds(now);
        case Event::MainHangs:
            return hasMain ? Supervisor::KillMain : 0;
        case Event::SpareHangs:
            return hasSpare ? Supervisor::KillSpare : 0;
        case Event::Started:
            return startEnds(now, true);
        case Event::StartFailed:
            return startEnds(now, false);
        default:
            return reload();
        }
    }
    [[nodiscard]] Supervisor::State state() const {
        using enum Supervisor::Main;
        const auto spare = !hasMain     ? Supervisor::Spare::Absent
                           : hasSpare   ? Supervisor::Spare::Running
                           : isStarting ? Supervisor::Spare::Starting
                                        : Supervisor::Spare::Absent;
        return {isOut ? GivenUp : hasMain ? Running : isStarting ? Starting : Absent, spare};
    }
};

} // namespace

TEST(Supervisor, BehavesLikeItsModelInRandomHistories) {
    constexpr std::chrono::milliseconds Steps[] = {0ms, 1ms, 500ms, 1000ms, 4000ms, 11s, 15s, 61s};
    constexpr Event Events[] = {Event::MainEnded, Event::SpareEnded,  Event::MainHangs, Event::SpareHangs,
                                Event::Started,   Event::StartFailed, Event::Reload};
    int outages = 0, promotions = 0, outdated = 0, defaults = 0;
    for (unsigned history = 0; history < 10'000; ++history) {
        std::mt19937 random(history);
        const auto below = [&random](std::size_t limit) { return random() % limit; };
        Time now{1h};
        Model model;
        model.mainSince = now;
        model.settings.isAllocated = true;
        Supervisor supervisor(model.settings, now);
        const std::size_t steps = 1 + below(8); // some histories have short pauses only
        for (int i = 0; i < 200; ++i) {
            int actions = 0, expected = 0;
            now += Steps[below(steps)];
            const std::size_t kind = below(12);
            if (kind < 6) {
                // Most histories end processes and complete starts; a reload is rare.
                const Event event = Events[below(below(8) == 0 ? 7 : 6)];
                actions = supervisor.handle(event, now);
                expected = model.handle(event, now);
            } else if (kind == 6) {
                ++model.settings.generation;
                if (below(2) == 0) model.settings.isAllocated = !model.settings.isAllocated;
                if (below(4) == 0) model.settings.isOffline = !model.settings.isOffline;
                if (below(4) == 0) {
                    ++model.settings.stateGeneration;
                    model.shortLives = 0;
                    model.wantsDefaults = false;
                }
                supervisor.takeSettings(model.settings);
            } else if (kind == 7) {
                const bool isLarge = below(8) == 0;
                actions = supervisor.takeMemory(Supervisor::MostBytes + (isLarge ? 1 : 0));
                expected = model.measure(isLarge);
            } else {
                actions = supervisor.timePassed(now);
                expected = model.tick(now);
                // The caller sleeps until the time that the supervisor asks for: it must not be too late.
                auto later = model;
                const auto next = supervisor.nextTime();
                const Time until = std::min(next.value_or(now + 70s), now + 70s);
                ASSERT_TRUE(until <= now || later.tick(until - Time::duration(1)) == 0)
                    << "history " << history;
            }
            ASSERT_EQ(actions, expected) << "history " << history << ", step " << i;
            ASSERT_EQ(supervisor.state(), model.state()) << "history " << history << ", step " << i;
            ASSERT_EQ(supervisor.choice() == Supervisor::Choice::Defaults, model.wantsDefaults);
            outages += (actions & Supervisor::Outage) != 0 ? 1 : 0;
            promotions += (actions & Supervisor::Promote) != 0 ? 1 : 0;
            outdated += (actions & Supervisor::Drop) != 0 ? 1 : 0;
            defaults += model.wantsDefaults ? 1 : 0;
        }
    }
    EXPECT_GT(std::min({outages, promotions, outdated, defaults}), 1000);
}

TEST(Supervisor, StartsAProcessAgainAtGrowingIntervals) {
    RestartPolicy policy;
    const auto now = RestartPolicy::Clock::now();
    EXPECT_LE(policy.nextStart(), now);
    for (const auto delay : {0s, 1s, 4s, 15s}) {
        policy.noteEnd(now);
        EXPECT_EQ(policy.nextStart(), now + delay);
    }
    policy.noteEnd(now);
    EXPECT_FALSE(policy.nextStart());
    policy.noteEnd(now + 61s);
    EXPECT_EQ(policy.nextStart(), now + 61s);
}

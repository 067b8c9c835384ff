// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests that the host survives effects that do harm in their own processes: the sound goes on, and when the
// effect is released, nothing of it is left.
#include "tests/effects/Rendering.hpp"
#include "tests/effects/effectProcesses.hpp"

#include <atomic>
#include <thread>

using namespace platform;
using namespace platform::test;

namespace {

constexpr std::uint32_t Block = 512;
constexpr double Rate = 48000;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// What the host does with the effect while it plays.
enum class Use { Play, PlayOffline, Save, Restore, ChangeRate };

struct Bad {
    const char* fault;
    const char*
        report; // what the host has to say on standard error; empty: not that its process has ended by itself
    Use use = Use::Play;
};

// Renders so many blocks, but for at least 0.3 and at most about 2 seconds.
void play(Rendering& rendering, int most) {
    float loudest = 0;
    const auto begin = Clock::now();
    const auto lasts = [&](Clock::duration time) { return Clock::now() - begin < time; };
    for (int blocks = 0; (blocks < most || lasts(300ms)) && lasts(2s); ++blocks) {
        loudest = rendering.loudestOf(1);
        ASSERT_LE(loudest, 1) << "in block " << blocks;
        std::this_thread::sleep_for(100us);
    }
    EXPECT_GT(loudest, 0.2); // the effect halves the input, whose peak is 0.5
}

void use(AUAudioUnit& unit, Use use) {
    if (use == Use::Save) unit.fullState();
    if (use == Use::Restore) {
        const auto failure = unit.setFullState(unit.fullState());
        EXPECT_TRUE(failure);
    }
    if (use == Use::ChangeRate) {
        EXPECT_TRUE(unit.processor()->allocate(44100, Block));
    }
}

int countOf(std::string_view text, std::string_view part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

class BadEffect : public testing::TestWithParam<Bad> {};

} // namespace

TEST_P(BadEffect, IsSurvived) {
    const Bad& bad = GetParam();
    // Opens the descriptors that waiting needs.
    ASSERT_TRUE(waitFor([count = 0]() mutable { return ++count == 2; }));
    const auto descriptors = openDescriptors();
    const auto begin = Clock::now();
    testing::internal::CaptureStderr();
    std::atomic<int> events{0};
    std::string refusal;
    try {
        const auto unit = makeUnit(std::string("urn:tonewright:bad:") + bad.fault);
        unit->setMIDIOutputEventBlock([&events](auto...) { return ++events, 0; });
        unit->processor()->setOffline(bad.use == Use::PlayOffline);
        Rendering rendering(*unit, Rate, Block);
        play(rendering, 1100);
        use(*unit, bad.use);
        play(rendering, 100);
    } catch (const std::runtime_error& error) {
        refusal = error.what();
    }
    const std::string report = testing::internal::GetCapturedStderr() + refusal;
    if (*bad.report == '\0') {
        // On a busy machine any effect may be late twice in a row, and is killed for that.
        EXPECT_EQ(countOf(report, "has ended ("), countOf(report, "has ended (Killed)")) << report;
    } else {
        EXPECT_GE(countOf(report, bad.report), 1) << report;
    }
    if (std::string_view(bad.fault) == "midi") {
        EXPECT_GT(events, 1000);
    }
    EXPECT_LT(Clock::now() - begin, 12s);
    EXPECT_TRUE(waitFor([] { return effectProcesses().empty(); }));
    EXPECT_TRUE(waitFor([&] { return openDescriptors() == descriptors; }))
        << testing::PrintToString(openDescriptors());
}

INSTANTIATE_TEST_SUITE_P(
    , BadEffect,
    testing::Values(Bad{"abort_instantiate", "its process has ended"},
                    Bad{"abort_run", "has ended (Aborted)"}, Bad{"abort_thousandth", "has ended (Aborted)"},
                    Bad{"abort_save", "has ended (Aborted)", Use::Save},
                    Bad{"abort_restore", "has ended (Aborted)", Use::Restore},
                    Bad{"abort_cleanup", "has ended (Aborted)", Use::ChangeRate},
                    Bad{"exit_instantiate", "its process has ended"},
                    Bad{"exit_run", "has ended (exit status 0)"}, Bad{"loop_run", "has ended (Killed)"},
                    Bad{"late_run", "has ended (Killed)"}, Bad{"stack", "has ended"},
                    Bad{"beyond", "has ended (Segmentation fault)"},
                    Bad{"below", "has ended (Segmentation fault)"}, Bad{"words", "has ended (Killed)"},
                    Bad{"messages", "", Use::Save}, Bad{"sockets", "has ended", Use::Save}, Bad{"atoms", ""},
                    Bad{"memory", "has ended"}, Bad{"descriptors", "has ended", Use::Save},
                    Bad{"worker", "", Use::Save}, Bad{"threads", "", Use::Save},
                    Bad{"midi", "", Use::PlayOffline}, Bad{"state", "its state is larger than", Use::Save}),
    [](const auto& tested) { return tested.param.fault; });

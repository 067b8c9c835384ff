// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What is heard when an effect's process ends or stops. The sound is recorded and compared afterwards, to
// 1e-6, with the sound of effects in this process: of one that has heard everything, then, after a failure,
// of a new one that has heard the previous block, as the standby process has. A block that equals the delayed
// input is dry.
#include "Track.hpp"
#include "measurements.hpp"

#include "tests/effects/effectProcesses.hpp"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <map>
#include <random>

namespace bench {
namespace {

constexpr std::uint32_t Frames = 256;
constexpr std::uint32_t FadeFrames = 240;
constexpr std::size_t Plane = Frames, Block = 2 * Plane;
constexpr std::size_t MostBlocks = 4000;
constexpr int FailuresPerUnit = 2; // a third one within a minute would have to wait for a new standby process

void sleepFor(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

// Plays at the pace of a sound card and records what is heard, for as long as the object lives.
class Playing {
  public:
    Playing(Track& track, const Sound& in, Sound& out)
        : _thread([&] {
            (void)becomeRealtime();
            auto next = std::chrono::steady_clock::now();
            for (std::size_t i = 0; i < MostBlocks && !_isOver; blocks = ++i) {
                track.render(&in[i * Block], &out[i * Block], static_cast<std::int64_t>(i * Frames));
                next += period(Frames);
                std::this_thread::sleep_until(next);
            }
        }) {}
    ~Playing() {
        _isOver = true;
        _thread.join();
    }
    Playing(const Playing&) = delete;
    Playing& operator=(const Playing&) = delete;

    std::atomic<std::size_t> blocks{0};

  private:
    std::atomic<bool> _isOver{false};
    std::thread _thread;
};

// Compares what was heard with what should have been heard.
class Comparison {
  public:
    Comparison(const Sound& in, const Sound& heard, std::size_t blocks)
        : _in(in)
        , _heard(heard) {
        _reference = fresh();
        for (std::size_t i = 0; i < blocks; ++i) compare(i);
    }

    std::vector<std::size_t> dry;         // the blocks without the effect
    std::vector<std::size_t> unexplained; // those that are neither dry nor as expected
    int takeovers = 0;

  private:
    static std::unique_ptr<Track> fresh() {
        return std::make_unique<Track>(makeUnit(BundledEffect, Where::InProcess), Frames, false);
    }
    [[nodiscard]] Sound expectedOf(Track& track, std::size_t block) const {
        Sound out(Block);
        track.render(&_in[block * Block], out.data(), static_cast<std::int64_t>(block * Frames));
        return out;
    }
    [[nodiscard]] float dryAt(std::size_t block, std::size_t plane, std::size_t frame) const {
        const std::size_t at = block * Frames + frame, latency = _reference->unit->latencyFrames();
        if (at < latency) return 0;
        return _in[(at - latency) / Frames * Block + plane * Plane + (at - latency) % Frames];
    }
    // Returns the sound with the fade that follows a dry block.
    [[nodiscard]] Sound faded(Sound sound, std::size_t block) const {
        for (std::size_t plane = 0; plane < 2; ++plane) {
            for (std::size_t i = 0; i < FadeFrames; ++i) {
                const float wet = static_cast<float>(i + 1) / static_cast<float>(FadeFrames + 1);
                float& sample = sound[plane * Plane + i];
                sample = wet * sample + (1 - wet) * dryAt(block, plane, i);
            }
        }
        return sound;
    }
    [[nodiscard]] bool isHeard(std::size_t block, const Sound& expected) const {
        return std::equal(expected.begin(), expected.end(), &_heard[block * Block],
                          [](float a, float b) { return std::abs(a - b) <= 1e-6F; });
    }
    [[nodiscard]] bool isDry(std::size_t block) const {
        Sound expected(Block);
        for (std::size_t i = 0; i < Block; ++i) expected[i] = dryAt(block, i / Plane, i % Plane);
        return isHeard(block, expected);
    }
    void compare(std::size_t block) {
        const bool followsDry = !dry.empty() && dry.back() + 1 == block;
        Sound expected = expectedOf(*_reference, block);
        if (isHeard(block, followsDry ? faded(expected, block) : expected)) return;
        if (isDry(block)) return dry.push_back(block);
        // A standby process has heard the block before, or, if it was late for that one, an earlier block.
        for (std::size_t heardBefore = block; heardBefore-- > 0 && heardBefore + 4 > block;) {
            auto candidate = fresh();
            (void)expectedOf(*candidate, heardBefore);
            Sound other = expectedOf(*candidate, block);
            if (!isHeard(block, followsDry ? faded(std::move(other), block) : other)) continue;
            _reference = std::move(candidate);
            ++takeovers;
            return;
        }
        unexplained.push_back(block);
    }

    const Sound& _in;
    const Sound& _heard;
    std::unique_ptr<Track> _reference;
};

struct Tally {
    std::map<std::size_t, int> failuresByDryBlocks;
    int takeovers = 0;
    std::size_t elsewhere = 0, unexplained = 0, blocks = 0;
};

// Waits until the effect and its standby process run.
void waitForBoth() {
    while (platform::test::effectProcesses().size() < 2) sleepFor(0.002);
    sleepFor(0.12); // for the standby process to load the effect
}

void failOnce(int signal, int failures, const Sound& in, std::mt19937& random, Tally& tally) {
    Sound out(in.size());
    std::vector<std::size_t> moments;
    std::size_t blocks = 0;
    {
        Track track(makeUnit(BundledEffect, Where::OwnProcess), Frames, false);
        const Playing playing(track, in, out);
        for (int i = 0; i < failures; ++i) {
            waitForBoth();
            sleepFor(std::uniform_real_distribution<>(0, 0.05)(random));
            const auto processes = platform::test::effectProcesses();
            moments.push_back(playing.blocks);
            ::kill(processes.front(), signal);
            sleepFor(0.06);
        }
        sleepFor(0.1);
        blocks = playing.blocks;
    }
    const Comparison comparison(in, out, blocks);
    std::size_t counted = 0;
    for (std::size_t i = 0; i < moments.size(); ++i) {
        const std::size_t first = moments[i], last = first + 10;
        const auto found = static_cast<std::size_t>(std::ranges::count_if(
            comparison.dry, [&](std::size_t block) { return block >= first && block <= last; }));
        ++tally.failuresByDryBlocks[found];
        counted += found;
    }
    tally.takeovers += comparison.takeovers;
    tally.elsewhere += comparison.dry.size() - counted;
    tally.unexplained += comparison.unexplained.size();
    tally.blocks += blocks;
}

void measure(const char* name, int signal, int count) {
    const Sound in = chord(MostBlocks, Frames);
    std::mt19937 random(1);
    Tally tally;
    for (int left = count; left > 0; left -= FailuresPerUnit) {
        failOnce(signal, std::min(left, FailuresPerUnit), in, random, tally);
    }
    for (const auto& [dry, failures] : tally.failuresByDryBlocks) {
        std::printf("%ss_with_%zu_dry_blocks %d\n", name, dry, failures);
    }
    std::printf("%s_takeovers %d\n%s_dry_elsewhere %zu\n%s_unexplained_blocks %zu\n%s_blocks %zu\n", name,
                tally.takeovers, name, tally.elsewhere, name, tally.unexplained, name, tally.blocks);
    std::fflush(stdout);
}

} // namespace

void measureFailures(int kills, int hangs) {
    measure("kill", SIGKILL, kills);
    measure("hang", SIGSTOP, hangs);
}

} // namespace bench

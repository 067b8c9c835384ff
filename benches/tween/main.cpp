// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Ticks per tween, at three sizes, beside three libraries and a program that does nothing but the work.
#include "benches/support/measure.hpp"
#include "benches/tween/Crowd.hpp"

#include <cstdlib>
#include <map>
#include <string>

namespace {

using namespace bench;

struct Subject {
    const char* name;
    std::unique_ptr<Crowd> (*make)(std::size_t);
    std::size_t largest;
};

// A million animations of Qt fill several gigabytes.
constexpr Subject Subjects[] = {{"tonewright", makeStackCrowd, 1'000'000},
                                {"limit", makeLimitCrowd, 1'000'000},
                                {"tweeny", makeTweenyCrowd, 1'000'000},
                                {"claw", makeClawCrowd, 1'000'000},
                                {"qt", makeQtCrowd, 100'000}};

struct Times {
    double add, tick, remove; // nanoseconds per tween
};

Times measure(const Subject& subject, std::size_t count) {
    const auto crowd = subject.make(count);
    const double each = static_cast<double>(count);
    Times times{};
    times.add = nanoseconds([&] { crowd->add(); }) / each;
    std::vector<double> ticks;
    const std::size_t rounds = std::clamp<std::size_t>(10'000'000 / count, 20, 600);
    for (std::size_t i = 0; i < rounds; ++i) ticks.push_back(nanoseconds([&] { crowd->tick(); }) / each);
    times.tick = median(ticks);
    times.remove = nanoseconds([&] { crowd->remove(); }) / each;
    if (!(crowd->sum() > 0)) std::printf("%s did not call back\n", subject.name), std::exit(1);
    return times;
}

} // namespace

int main() {
    Report report;
    std::map<std::string, Times> at100k;
    std::printf("%-12s %10s %14s %14s %14s\n", "", "tweens", "tick (ns)", "add (ns)", "remove (ns)");
    for (const std::size_t count : {std::size_t{1'000}, std::size_t{100'000}, std::size_t{1'000'000}})
        for (const Subject& subject : Subjects) {
            if (count > subject.largest) continue;
            std::vector<double> add, tick, remove;
            for (int round = 0; round < 3; ++round) {
                const Times times = measure(subject, count);
                add.push_back(times.add), tick.push_back(times.tick), remove.push_back(times.remove);
            }
            const Times times{median(add), median(tick), median(remove)};
            std::printf("%-12s %10zu %14.2f %14.2f %14.2f\n", subject.name, count, times.tick, times.add,
                        times.remove);
            std::fflush(stdout);
            const std::string size = count == 1'000 ? "1k" : count == 100'000 ? "100k" : "1m";
            report.figure("tick" + size + "_" + subject.name + "_ns", times.tick);
            if (count == 100'000) {
                report.figure(std::string("add_") + subject.name + "_ns", times.add);
                report.figure(std::string("remove_") + subject.name + "_ns", times.remove);
                at100k[subject.name] = times;
            }
        }
    for (const char* peer : {"limit", "tweeny", "claw", "qt"}) {
        const Times& ours = at100k["tonewright"];
        const Times& theirs = at100k[peer];
        report.ratio(std::string("tick100k/") + peer, ours.tick / theirs.tick);
        if (std::string(peer) == "limit") continue; // it has no members to add and remove
        report.ratio(std::string("add100k/") + peer, ours.add / theirs.add);
        report.ratio(std::string("remove100k/") + peer, ours.remove / theirs.remove);
    }
    report.figure("finish100k_ms", finishMilliseconds(100'000));
    report.figure("bytes_per_animator", bytesPerAnimator(100'000));
    report.write("tween");
}

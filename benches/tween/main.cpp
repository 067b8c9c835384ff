// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the cost of a tick per tween at three sizes, compared with three libraries and the limit program.
#include "benches/support/measure.hpp"
#include "benches/tween/Crowd.hpp"

#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace bench;

struct Subject {
    const char* name;
    std::unique_ptr<Crowd> (*make)(std::size_t);
    std::size_t largest;
};

// A million of Qt's animations occupy several gigabytes.
constexpr Subject Subjects[] = {{.name = "tonewright", .make = makeStackCrowd, .largest = 1'000'000},
                                {.name = "limit", .make = makeLimitCrowd, .largest = 1'000'000},
                                {.name = "tweeny", .make = makeTweenyCrowd, .largest = 1'000'000},
                                {.name = "claw", .make = makeClawCrowd, .largest = 1'000'000},
                                {.name = "qt", .make = makeQtCrowd, .largest = 100'000}};

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

using Rounds = std::vector<Times>;

double middle(const Rounds& rounds, double Times::*field) {
    std::vector<double> values;
    for (const Times& times : rounds) values.push_back(times.*field);
    return median(values);
}

// Returns the median of the rounds' ratios: within a round the libraries run under the same conditions.
double ratio(const Rounds& ours, const Rounds& theirs, double Times::*field) {
    std::vector<double> values;
    for (std::size_t i = 0; i < ours.size(); ++i) values.push_back((ours[i].*field) / (theirs[i].*field));
    return median(values);
}

} // namespace

int main() {
    Report report;
    std::map<std::string, Rounds> at100k;
    std::printf("%-12s %10s %14s %14s %14s\n", "", "tweens", "tick (ns)", "add (ns)", "remove (ns)");
    for (const std::size_t count : {std::size_t{1'000}, std::size_t{100'000}, std::size_t{1'000'000}}) {
        std::map<std::string, Rounds> rounds;
        for (int round = 0; round < (count == 100'000 ? 7 : 3); ++round) {
            for (const Subject& subject : Subjects) {
                if (count <= subject.largest) rounds[subject.name].push_back(measure(subject, count));
            }
        }
        for (const Subject& subject : Subjects) {
            if (count > subject.largest) continue;
            const Rounds& own = rounds[subject.name];
            const double tick = middle(own, &Times::tick);
            const double add = middle(own, &Times::add);
            const double remove = middle(own, &Times::remove);
            std::printf("%-12s %10zu %14.2f %14.2f %14.2f\n", subject.name, count, tick, add, remove);
            const std::string size = count == 1'000 ? "1k" : count == 100'000 ? "100k" : "1m";
            report.figure("tick" + size + "_" + subject.name + "_ns", tick);
            if (count != 100'000) continue;
            report.figure(std::string("add_") + subject.name + "_ns", add);
            report.figure(std::string("remove_") + subject.name + "_ns", remove);
        }
        std::fflush(stdout);
        if (count == 100'000) at100k = std::move(rounds);
    }
    for (const char* peer : {"limit", "tweeny", "claw", "qt"}) {
        const Rounds& ours = at100k["tonewright"];
        const Rounds& theirs = at100k[peer];
        report.ratio(std::string("tick100k/") + peer, ratio(ours, theirs, &Times::tick));
        if (std::string(peer) == "limit") continue; // the limit program has no members to add and remove
        report.ratio(std::string("add100k/") + peer, ratio(ours, theirs, &Times::add));
        report.ratio(std::string("remove100k/") + peer, ratio(ours, theirs, &Times::remove));
    }
    report.figure("finish100k_ms", finishMilliseconds(100'000));
    report.figure("bytes_per_animator", bytesPerAnimator(100'000));
    report.write("tween");
}

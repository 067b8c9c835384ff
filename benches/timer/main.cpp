// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures timers of four intervals, one after the other: ours, a bare loop, GLib's and Qt's. Prints how late
// the firings are compared with the ideal dates, how many are lost, and how far the last one has drifted.
// Also measures the cost of 10,000 idle armed timers. Argument: seconds per run (default 10).
#include "benches/support/measure.hpp"
#include "benches/timer/peers.hpp"
#include "platform/dispatch/RunLoop.hpp"
#include "platform/dispatch/Timer.hpp"

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

bench::Dates tonewrightDates(double interval, double seconds) {
    bench::Dates dates;
    auto loop = platform::RunLoop::current();
    const auto start = Clock::now();
    const auto timer = platform::Timer::scheduledTimerWithTimeInterval(interval, true, [&] {
        dates.push_back(std::chrono::duration<double>(Clock::now() - start).count());
    });
    loop.runFor(seconds + interval / 2);
    timer->invalidate();
    return dates;
}

struct Quality {
    double medianErrorMilliseconds, worstErrorMilliseconds, driftMilliseconds;
    double lost; // ideal dates without a firing
};

Quality judge(const bench::Dates& dates, double interval, double seconds) {
    std::vector<double> errors;
    double lastGrid = 0;
    for (const double date : dates) {
        const double grid = std::floor(date / interval + 1e-9); // the latest ideal date for this firing
        errors.push_back((date - std::max(grid, lastGrid + 1) * interval) * 1e3);
        lastGrid = std::max(grid, lastGrid + 1);
    }
    const double expected = std::floor((seconds + interval / 2) / interval);
    for (double& error : errors) error = std::fabs(error);
    const double worst = errors.empty() ? 0 : *std::max_element(errors.begin(), errors.end());
    // Drift is the date of the last of n firings minus n intervals, as a user would count them.
    const double drift =
        dates.empty() ? 0 : (dates.back() - static_cast<double>(dates.size()) * interval) * 1e3;
    return {bench::median(errors), worst, drift, expected - static_cast<double>(dates.size())};
}

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// Returns the processor time, in seconds per second, of a 5 ms timer while `idle` other timers are armed.
double cost(int idle) {
    constexpr double Seconds = 0.5;
    std::vector<std::shared_ptr<platform::Timer>> timers;
    for (int i = 0; i < idle; ++i) {
        timers.push_back(platform::Timer::scheduledTimerWithTimeInterval(3600 + i, true, [] {}));
    }
    const double before = processorSeconds();
    (void)tonewrightDates(0.005, Seconds);
    const double used = (processorSeconds() - before) / Seconds;
    for (const auto& timer : timers) timer->invalidate();
    return used;
}

} // namespace

int main(int argc, char** argv) {
    const double seconds = argc > 1 ? std::atof(argv[1]) : 10;
    bench::Report report;
    std::printf("%-12s %10s %16s %14s %8s %12s\n", "", "interval", "median err (ms)", "worst (ms)", "lost",
                "drift (ms)");
    struct Subject {
        const char* name;
        bench::Dates (*run)(double, double);
    };
    constexpr Subject Subjects[] = {{"tonewright", tonewrightDates},
                                    {"bare", bench::bareDates},
                                    {"g_timeout", bench::glibDates},
                                    {"qt", bench::qtDates}};
    for (const double milliseconds : {0.5, 1.0, 5.0, 16.0}) {
        for (const Subject& subject : Subjects) {
            const double interval = milliseconds / 1e3;
            const Quality q = judge(subject.run(interval, seconds), interval, seconds);
            std::printf("%-12s %7.1f ms %16.4f %14.3f %8.0f %12.3f\n", subject.name, milliseconds,
                        q.medianErrorMilliseconds, q.worstErrorMilliseconds, q.lost, q.driftMilliseconds);
            std::fflush(stdout);
            char size[16];
            std::snprintf(size, sizeof size, "%gms", milliseconds);
            const std::string prefix = std::string(subject.name) + "_" + size + "_";
            report.figure(prefix + "median_error_ms", q.medianErrorMilliseconds);
            report.figure(prefix + "lost", q.lost);
            report.figure(prefix + "drift_ms", q.driftMilliseconds);
        }
    }
    // Alternating rounds and medians, because noise can hide 0.2 % of a processor.
    std::vector<double> aloneRounds, crowdedRounds;
    for (int round = 0; round < 7; ++round) {
        aloneRounds.push_back(cost(0)), crowdedRounds.push_back(cost(10'000));
    }
    const double alone = bench::median(aloneRounds);
    const double crowded = bench::median(crowdedRounds);
    std::printf("a 5 ms timer takes %.2f ms of processor time per second; with 10,000 idle timers: %.2f ms\n",
                alone * 1e3, crowded * 1e3);
    report.figure("second_alone_cpu_ms", alone * 1e3);
    report.figure("second_beside_10k_idle_cpu_ms", crowded * 1e3);
    report.write("timer");
}

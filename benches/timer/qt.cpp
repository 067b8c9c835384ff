// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/timer/peers.hpp"

#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>

namespace bench {

Dates qtDates(double interval, double seconds) {
    using Clock = std::chrono::steady_clock;
    int argc = 1;
    char name[] = "bench_timer";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    Dates dates;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(static_cast<int>(std::max(1.0, std::round(interval * 1e3))));
    const auto start = Clock::now();
    QObject::connect(&timer, &QTimer::timeout,
                     [&] { dates.push_back(std::chrono::duration<double>(Clock::now() - start).count()); });
    timer.start();
    QTimer::singleShot(static_cast<int>((seconds + interval / 2) * 1e3), Qt::PreciseTimer, &application,
                       [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    return dates;
}

} // namespace bench

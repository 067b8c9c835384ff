// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Every curve as an animator calls it, through the function it has selected, beside the bare formula called
// through a pointer and beside Qt's curve; and whether the bits are those of the bare formula.
#include "benches/easing/plain.hpp"
#include "benches/support/measure.hpp"
#include "tests/animator/AnimatorInspection.hpp"

#include <QEasingCurve>
#include <algorithm>
#include <bit>
#include <string>

namespace {

using namespace tonewright;
using bench::nanoseconds;

constexpr std::int64_t Frames = 1000;
constexpr int Rounds = 400;

// Gives the nanoseconds per call of one run over all frames.
template <class Call>
double perCall(const Call& call) {
    return nanoseconds([&] {
               for (std::int64_t t = 0; t < Frames; ++t) bench::keep(call(t));
           }) /
           static_cast<double>(Frames);
}

// Qt has the ten families in the same order, without the straight line's fellows.
QEasingCurve::Type qtType(int raw) {
    return static_cast<QEasingCurve::Type>(raw);
}

} // namespace

int main() {
    bench::Report report;
    std::printf("%-20s %10s %10s %10s %12s %10s\n", "ns per call", "selected", "bare", "Qt", "selected/bare",
                "same bits");
    double worst = 0;
    double slowestAgainstQt = 0;
    int different = 0;
    Animator animator;
    for (int raw = 0; raw < bench::PlainCount; ++raw) {
        const auto type = static_cast<EnumEasing>(raw);
        animator.setType(type);
        const Animator::Action selected = AnimatorInspection::action(animator);
        const bench::Plain plain = bench::PlainFormulas[raw];
        bool same = true;
        for (const std::int64_t d : {7, 60, 1000})
            for (std::int64_t t = 0; t <= d; ++t)
                for (const auto& [b, c] : {std::pair{0.0F, 1.0F}, {-3.5F, 100.0F}})
                    same = same && std::bit_cast<std::uint32_t>(selected(animator, t, b, c, d)) ==
                                       std::bit_cast<std::uint32_t>(plain(t, b, c, d));
        different += same ? 0 : 1;
        Animator::Action volatile selectedPointer = selected;
        bench::Plain volatile plainPointer = plain;
        const QEasingCurve curve(qtType(raw));
        // The shortest of many runs, for what disturbs a run only makes it longer; taken in turns, so that
        // all three see the same machine.
        double ours = 1e300, bare = 1e300, qt = 1e300;
        for (int round = 0; round < Rounds; ++round) {
            const Animator::Action action = selectedPointer;
            const bench::Plain formula = plainPointer;
            ours =
                std::min(ours, perCall([&](std::int64_t t) { return action(animator, t, 1, 100, Frames); }));
            bare = std::min(bare, perCall([&](std::int64_t t) { return formula(t, 1, 100, Frames); }));
            qt = std::min(qt, perCall([&](std::int64_t t) {
                              return static_cast<float>(
                                  1 + 100 * curve.valueForProgress(static_cast<double>(t) /
                                                                   static_cast<double>(Frames)));
                          }));
        }
        const std::string name(easingName(type));
        std::printf("%-20s %10.2f %10.2f %10.2f %12.3f %10s\n", name.c_str(), ours, bare, qt, ours / bare,
                    same ? "yes" : "NO");
        worst = std::max(worst, ours / bare);
        const int family = (raw - 1) / 4;
        if (raw > 0 && (family == 4 || family == 5 || family == 7)) {
            report.ratio(name + "/qt", ours / qt);
            slowestAgainstQt = std::max(slowestAgainstQt, ours / qt);
        }
    }
    report.ratio("selected/bare_worst", worst);
    report.ratio("sine_expo_elastic/qt_worst", slowestAgainstQt);
    report.figure("curves_with_other_bits", different);
    report.write("easing");
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures every curve as an animator calls it (through the function that it has selected), the bare formula
// called through a function pointer, and Qt's curve. Also checks that ours and the bare formula return the
// same bits.
#include "benches/easing/plain.hpp"
#include "benches/support/measure.hpp"
#include "tests/animator/AnimatorInspection.hpp"

#include <QEasingCurve>
#include <algorithm>
#include <bit>
#include <string>
#include <vector>

namespace {

using namespace tonewright;
using bench::nanoseconds;

constexpr std::int64_t Frames = 1000;
constexpr int Rounds = 400;

// Returns the nanoseconds per call, measured over one pass through all frames. Not inlined, so that every
// subject is called from a loop that keeps its state in registers.
template <class Call>
[[gnu::noinline]] double perCall(Call call) {
    return nanoseconds([call] {
               const Call own = call;
               for (std::int64_t t = 0; t < Frames; ++t) bench::keep(own(t));
           }) /
           static_cast<double>(Frames);
}

// Qt lists the linear curve and the four shapes of the ten families in the same order as EnumEasing.
QEasingCurve::Type qtType(int raw) {
    return static_cast<QEasingCurve::Type>(raw);
}

struct Curve {
    Animator::Action selected;
    bench::Plain bare;
    QEasingCurve qt;
    std::vector<double> ours, bares, qts, toBare, toQt;
};

bool sameBits(Animator& animator, const Curve& curve) {
    for (const std::int64_t d : {7, 60, 1000}) {
        for (std::int64_t t = 0; t <= d; ++t) {
            for (const auto& [b, c] : {std::pair{0.0F, 1.0F}, {-3.5F, 100.0F}}) {
                if (std::bit_cast<std::uint32_t>(curve.selected(animator, t, b, c, d)) !=
                    std::bit_cast<std::uint32_t>(curve.bare(t, b, c, d))) {
                    return false;
                }
            }
        }
    }
    return true;
}

} // namespace

int main() {
    bench::Report report;
    Animator animator;
    std::vector<Curve> curves;
    for (int raw = 0; raw < bench::PlainCount; ++raw) {
        animator.setType(static_cast<EnumEasing>(raw));
        curves.push_back({AnimatorInspection::action(animator),
                          bench::PlainFormulas[raw],
                          QEasingCurve(qtType(raw)),
                          {},
                          {},
                          {},
                          {},
                          {}});
    }
    // The subjects are measured alternately: the processor's clock rate changes by up to a half between
    // rounds, but hardly within one round. Each round gives one ratio, and the median of the ratios is
    // reported.
    for (int round = 0; round < Rounds; ++round) {
        for (Curve& curve : curves) {
            curve.ours.push_back(perCall([action = curve.selected, actor = &animator](std::int64_t t) {
                return action(*actor, t, 1, 100, Frames);
            }));
            curve.bares.push_back(
                perCall([formula = curve.bare](std::int64_t t) { return formula(t, 1, 100, Frames); }));
            curve.qts.push_back(perCall([held = &curve.qt](std::int64_t t) {
                return static_cast<float>(
                    1 + 100 * held->valueForProgress(static_cast<double>(t) / static_cast<double>(Frames)));
            }));
            curve.toBare.push_back(curve.ours.back() / curve.bares.back());
            curve.toQt.push_back(curve.ours.back() / curve.qts.back());
        }
    }
    std::printf("%-20s %10s %10s %10s %12s %10s\n", "ns per call", "selected", "bare", "Qt", "selected/bare",
                "same bits");
    double worst = 0;
    double slowestAgainstQt = 0;
    int different = 0;
    for (std::size_t raw = 0; raw < curves.size(); ++raw) {
        const Curve& curve = curves[raw];
        const std::string name(easingName(static_cast<EnumEasing>(raw)));
        const bool same = sameBits(animator, curve);
        const double toBare = bench::median(curve.toBare);
        const double toQt = bench::median(curve.toQt);
        std::printf("%-20s %10.2f %10.2f %10.2f %12.3f %10s\n", name.c_str(), bench::median(curve.ours),
                    bench::median(curve.bares), bench::median(curve.qts), toBare, same ? "yes" : "NO");
        worst = std::max(worst, toBare);
        different += same ? 0 : 1;
        const std::size_t family = (raw - 1) / 4;
        if (raw > 0 && (family == 4 || family == 5 || family == 7)) {
            report.ratio(name + "/qt", toQt);
            slowestAgainstQt = std::max(slowestAgainstQt, toQt);
        }
    }
    report.ratio("selected/bare_worst", worst);
    report.ratio("sine_expo_elastic/qt_worst", slowestAgainstQt);
    report.figure("curves_with_other_bits", different);
    report.write("easing");
}

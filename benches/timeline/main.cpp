// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures a sequencer with 100,000 members: adding, an idle tick, a tick on which all start, and seeking.
// The first three are also measured with a tenth of the members, to show how the times grow.
#include "benches/support/measure.hpp"
#include "tests/animator/AnimatorInspection.hpp"

#include <memory>
#include <vector>

namespace {

using namespace tonewright;
using bench::nanoseconds;
using Look = AnimatorInspection;

constexpr std::int64_t Count = 100'000;
constexpr std::int64_t Far = 1'000'000; // a start frame that no tick of this program reaches

struct Scene {
    std::shared_ptr<AnimationSequencer> sequencer = std::make_shared<AnimationSequencer>();
    std::vector<std::shared_ptr<Animator>> animators;
};

// Sets up `count` animators and adds them at the start frames that `startOf` returns; times only the
// additions.
template <class StartOf>
double addEach(Scene& scene, std::int64_t count, const StartOf& startOf) {
    for (std::int64_t i = 0; i < count; ++i) scene.animators.push_back(std::make_shared<Animator>());
    return nanoseconds([&] {
               for (std::int64_t i = 0; i < count; ++i) {
                   const auto& animator = scene.animators[static_cast<std::size_t>(i)];
                   animator->setup(0, 1, 50);
                   scene.sequencer->add(animator, startOf(i));
               }
               bench::keep(scene.sequencer->getCount());
           }) /
           static_cast<double>(count);
}

double idleTick(AnimationSequencer& sequencer) {
    std::vector<double> ticks;
    for (int round = 0; round < 200; ++round) {
        ticks.push_back(nanoseconds([&] {
                            for (int i = 0; i < 50; ++i) Look::advance(sequencer);
                        }) /
                        50);
    }
    return bench::median(ticks);
}

// Returns the nanoseconds per member of adding members in reverse order and then sorting them.
double addReversed(std::int64_t count) {
    Scene scene;
    const double adding = addEach(scene, count, [&](std::int64_t i) { return Far + count - i; });
    return adding + nanoseconds([&] { Look::advance(*scene.sequencer); }) / static_cast<double>(count);
}

double startTogether(std::int64_t count, double& secondTick) {
    Scene scene;
    (void)addEach(scene, count, [](std::int64_t) { return 2; });
    Look::advance(*scene.sequencer);
    const double all = nanoseconds([&] { Look::advance(*scene.sequencer); });
    secondTick = nanoseconds([&] { Look::advance(*scene.sequencer); }) / static_cast<double>(count);
    return all / static_cast<double>(count);
}

double seekInto(std::int64_t count) {
    Scene scene;
    (void)addEach(scene, count, [](std::int64_t i) { return i; });
    Look::advance(*scene.sequencer);
    return nanoseconds([&] { scene.sequencer->seek(count / 2); }) / static_cast<double>(count);
}

} // namespace

int main() {
    bench::Report report;
    const auto show = [&](const char* name, double value, const char* unit) {
        std::printf("%-28s %12.3f %s\n", name, value, unit);
        report.figure(name, value);
    };
    Scene ordered;
    show("add_in_order_us", addEach(ordered, Count, [](std::int64_t i) { return Far + i; }) / 1e3,
         "per member");
    Look::advance(*ordered.sequencer);
    show("idle_tick_us", idleTick(*ordered.sequencer) / 1e3, "per tick");
    const double small = addReversed(Count / 10);
    const double large = addReversed(Count);
    show("add_reversed_us", large / 1e3, "per member, order included");
    double second = 0;
    show("start_together_us", startTogether(Count, second) / 1e3, "per member");
    show("tick_in_play_us", second / 1e3, "per member");
    const double seekSmall = seekInto(Count / 10);
    const double seekLarge = seekInto(Count);
    show("seek_us", seekLarge / 1e3, "per member");
    report.ratio("add_reversed_100k/10k", large / small);
    report.ratio("seek_100k/10k", seekLarge / seekSmall);
    report.write("timeline");
}

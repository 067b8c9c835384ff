// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Track.hpp"
#include "measurements.hpp"

#include "benches/support/measure.hpp"
#include "platform/effects/lv2/BundleIndex.hpp"
#include "platform/effects/lv2/World.hpp"
#include "platform/effects/outside/EffectProcess.hpp"
#include "tests/effects/effectProcesses.hpp"

#include <fstream>

namespace bench {
namespace {

using namespace platform::lv2;

// Returns the milliseconds until a new process has an instance of the effect and can render.
double startOnce(const Plugin& plugin, const BlockMemory::Shape& shape) {
    std::unique_ptr<EffectProcess> process;
    return nanoseconds([&] {
               auto started = EffectProcess::start(plugin, shape);
               if (!started) std::abort();
               process = std::move(started.value());
               const Message make{.request = Request::Make, .frames = 256, .sampleRate = Rate};
               if (!process->ask(make, {}, std::chrono::seconds(5))) std::abort();
           }) /
           1e6;
}

// Returns the memory of a process in MiB, in which each page counts divided by the number of its users.
double proportionalMemory(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string word; file >> word;) {
        double kibibytes = 0;
        if (word == "Pss:" && file >> kibibytes) return kibibytes / 1024;
    }
    return 0;
}

} // namespace

void measureStarts(int starts) {
    const BundleIndex index = BundleIndex::read();
    const World world(index, BundledEffect);
    const Plugin plugin = world.describe();
    const auto unit = makeUnit(BundledEffect, Where::OwnProcess);
    const BlockMemory::Shape shape{.inputs = unit->processor()->inputChannels(),
                                   .outputs = unit->processor()->outputChannels(),
                                   .ports = static_cast<std::uint32_t>(plugin.ports.size())};
    std::vector<double> confined, unconfined;
    for (int i = 0; i < starts; ++i) {
        ::setenv("TONEWRIGHT_EFFECT_CONFINEMENT", "on", 1);
        confined.push_back(startOnce(plugin, shape));
        ::setenv("TONEWRIGHT_EFFECT_CONFINEMENT", "off", 1);
        unconfined.push_back(startOnce(plugin, shape));
    }
    ::setenv("TONEWRIGHT_EFFECT_CONFINEMENT", "on", 1);
    const auto made = nanoseconds([] { (void)makeUnit(BundledEffect, Where::InProcess); });
    std::printf("start_ms %.2f\nstart_ms_worst %.2f\nstart_unconfined_ms %.2f\nin_process_unit_ms %.2f\n",
                median(confined), *std::ranges::max_element(confined), median(unconfined), made / 1e6);

    Track track(unit, 256, false);
    const Sound in = chord(100, 256);
    Sound out(512);
    for (std::size_t i = 0; i < 100; ++i) { // meanwhile the standby process starts
        track.render(&in[i * 512], out.data(), static_cast<std::int64_t>(i * 256));
        std::this_thread::sleep_for(period(256));
    }
    const auto processes = platform::test::effectProcesses();
    std::printf("child_mib %.2f\n", proportionalMemory(processes.front()));
    if (processes.size() > 1) std::printf("standby_mib %.2f\n", proportionalMemory(processes.back()));
}

} // namespace bench

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one installed effect as the application does: through the registry, the engine and its graph, on the
// offline device and briefly in real time. Prints one line per event: a word and its value. Also prints the
// name of each stage before the stage begins, so that the last line shows where the program crashed or hung.
//
// Usage: bench_sweep_ours
//            lists the effects: URI, name, version
//
//        bench_sweep_ours URI RATE FILE MOST_PRESETS
//            runs one effect; FILE is a sound file to loop
#include "Session.hpp"

#include "platform/audio/SilentDevice.hpp"
#include "platform/audio/seams.hpp"
#include "platform/effects/AVAudioUnitComponentManager.hpp"
#include "platform/foundation/console.hpp"

#include <array>
#include <chrono>
#include <cstdlib>
#include <thread>

using namespace platform;
using bench::instantiate;
using bench::OfflineSession;
using bench::say;

namespace {

constexpr std::uint32_t UsualBlock = 256, LongBlock = 1000;

using Message = std::array<std::uint8_t, 3>; // a MIDI message

/// Prints the peak and the number of bad samples of the effect's output since the last call.
void tell(const std::string& stage, bench::Meter& meter) {
    say("peak", stage + '\t' + std::to_string(meter.peak));
    if (meter.badSamples > 0) say("bad", stage + '\t' + std::to_string(meter.badSamples));
    meter.peak = 0;
    meter.badSamples = 0;
}

void play(OfflineSession& session, AUAudioUnit& unit, const std::string& stage, std::uint32_t frames) {
    say("stage", stage);
    constexpr std::array<std::uint8_t, 3> Keys{60, 64, 67};
    for (const std::uint8_t key : Keys) {
        unit.sendMIDIEvent(Message{0x90, key, 100});
    }
    session.render(frames < 16 ? 0.02 : 0.5, frames);
    for (const std::uint8_t key : Keys) {
        unit.sendMIDIEvent(Message{0x80, key, 0});
    }
    session.render(frames < 16 ? 0.02 : 0.5, frames);
    tell(stage, *session.meter);
}

void playPresets(OfflineSession& session, AUAudioUnit& unit, std::size_t most) {
    const auto presets = unit.factoryPresets();
    if (!presets) return;
    say("presets", std::to_string(presets->size()));
    std::size_t set = 0;
    for (const AUAudioUnitPreset& preset : *presets) {
        if (set == most) break;
        const std::string stage = "preset " + std::to_string(preset.number());
        say("stage", stage);
        unit.setCurrentPreset(preset);
        if (unit.currentPreset() != preset) say("unset", preset.name());
        unit.sendMIDIEvent(Message{0x90, 60, 100});
        session.render(0.1, UsualBlock);
        unit.sendMIDIEvent(Message{0x80, 60, 0});
        tell(stage, *session.meter);
        ++set;
    }
}

/// Moves every control away from its default.
void moveControls(AUAudioUnit& unit) {
    for (const AUParameter& parameter : unit.parameters()) {
        if (!parameter.isWritable) continue;
        float value = parameter.minValue + 0.37F * (parameter.maxValue - parameter.minValue);
        if (parameter.isInteger) value = std::round(value);
        if (parameter.isToggle) value = parameter.defaultValue > 0 ? 0.0F : 1.0F;
        if (parameter.isEnumeration && !parameter.valueStrings.empty()) {
            value = parameter.valueStrings[parameter.valueStrings.size() / 2].value;
        }
        unit.setParameterValue(parameter.address, value);
    }
}

std::string stateOf(const AUAudioUnit& unit) {
    const auto bytes = unit.fullState();
    return {bytes.begin(), bytes.end()};
}

/// Returns the first line in which the two texts differ, once from each text.
std::string difference(const std::string& wanted, const std::string& got) {
    std::size_t at = 0;
    while (at < wanted.size() && at < got.size() && wanted[at] == got[at]) {
        ++at;
    }
    const auto line = [at](const std::string& text) {
        if (at >= text.size()) return std::string("nothing");
        const std::size_t before = text.rfind('\n', at == 0 ? 0 : at - 1);
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        std::string result = text.substr(begin, std::min(text.find('\n', at), begin + 200) - begin);
        std::replace(result.begin(), result.end(), '\t', ' ');
        return result;
    };
    return line(wanted) + '\t' + line(got);
}

/// Sets the state and waits until the effect returns the same state; its worker may have to load files first.
void restore(OfflineSession& session, AUAudioUnit& unit, const std::string& stage, const std::string& state) {
    say("stage", stage);
    if (const auto failure = unit.setFullState(std::vector<std::uint8_t>(state.begin(), state.end()))) {
        say("state", stage + '\t' + failure->localizedDescription());
        return;
    }
    std::string got;
    for (int turn = 0; turn < 60; ++turn) {
        session.render(0.02, UsualBlock);
        got = stateOf(unit);
        if (got == state) {
            say("state", stage);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    say("state", stage + '\t' + difference(state, got));
}

int sweep(const char* uri, double rate, const char* path, std::size_t mostPresets) {
    const auto file = AVAudioFile::open(URL::fileURLWithPath(path));
    if (!file) {
        warn(file.error().localizedDescription());
        return 1;
    }
    const AVAudioFormat format{rate, 2};
    const auto device = [&](std::uint32_t block) { return std::make_shared<OfflineDevice>(format, block); };
    setSharedOutputDevice(device(UsualBlock));
    const auto newMeter = [](const AVAudioUnit& unit) {
        return std::make_shared<bench::Meter>(unit.processor());
    };

    say("stage", "instance");
    auto node = instantiate(uri);
    if (!node) return 0;
    auto unit = node->auAudioUnit();
    auto meter = newMeter(*node);
    say("channels", std::to_string(meter->inputChannels()) + '\t' + std::to_string(meter->outputChannels()) +
                        '\t' + (unit->sendMIDIEvent(Message{0xb0, 123, 0}) ? "notes" : "no notes"));
    {
        OfflineSession session(device(UsualBlock), meter, file.value());
        play(session, *unit, "256", UsualBlock);
        play(session, *unit, "1", 1);
        play(session, *unit, "63", 63);
        play(session, *unit, "257", 257);
    }
    {
        OfflineSession session(device(LongBlock), meter, file.value());
        play(session, *unit, "1000", LongBlock);
        play(session, *unit, "257 of 1000", 257);
        play(session, *unit, "1 of 1000", 1);
    }
    {
        say("stage", "in time");
        const bench::Session session(std::make_shared<SilentDevice>(format, UsualBlock), meter, file.value());
        unit->sendMIDIEvent(Message{0x90, 60, 100});
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        unit->sendMIDIEvent(Message{0x80, 60, 0});
    }
    tell("in time", *meter);
    std::string moved, initial;
    {
        OfflineSession session(device(UsualBlock), meter, file.value());
        say("stage", "save");
        initial = stateOf(*unit);
        playPresets(session, *unit, mostPresets);
        moveControls(*unit);
        session.render(0.1, UsualBlock);
        tell("moved", *meter);
        say("stage", "save moved");
        moved = stateOf(*unit);
        restore(session, *unit, "back", initial);
        restore(session, *unit, "there", moved);
        tell("restored", *meter);
    }
    meter.reset();
    unit.reset();
    say("stage", "release");
    node.reset();

    say("stage", "second instance");
    node = instantiate(uri);
    if (!node) return 0;
    unit = node->auAudioUnit();
    meter = newMeter(*node);
    {
        OfflineSession session(device(UsualBlock), meter, file.value());
        play(session, *unit, "another", UsualBlock);
        restore(session, *unit, "in another", moved);
        restore(session, *unit, "back in another", initial);
        tell("restored in another", *meter);
        say("stage", "exchange");
        const double other = rate == 48000 ? 44100 : 48000;
        session.setRate(other);
        for (int turn = 0; turn < 300 && meter->rate() != other && meter->failure().empty(); ++turn) {
            session.render(0.02, UsualBlock);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        if (meter->rate() != other) say("rate", meter->failure().empty() ? "never taken" : meter->failure());
        play(session, *unit, "other rate", UsualBlock);
    }
    say("stage", "end");
    meter.reset();
    unit.reset();
    node.reset();
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    reserveStandardOutput();
    if (count == 1) {
        const auto& manager = AVAudioUnitComponentManager::sharedAudioUnitComponentManager();
        for (const AVAudioUnitComponent& component : manager.componentsMatchingDescription({})) {
            print(component.record().identifier + '\t' + component.name() + '\t' + component.versionString());
        }
        return 0;
    }
    if (count != 5) {
        warn("usage: bench_sweep_ours [URI RATE FILE MOST_PRESETS]");
        return 2;
    }
    const int code = sweep(arguments[1], std::atof(arguments[2]), arguments[3],
                           static_cast<std::size_t>(std::strtoul(arguments[4], nullptr, 10)));
    say("done", "");
    // Exit handlers of plug-in libraries are not tested here, because the application skips them as well.
    return code;
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A minimal host of an LV2 effect: lilv, the features that small hosts offer, and a separate buffer for each
// port. Runs one second in blocks of 256 frames, with a note if the effect accepts MIDI, then blocks of other
// lengths, and then a second instance. The worker runs between blocks. Prints the largest magnitude of the
// output and how many samples were not finite.
//
// Usage: bench_sweep_host
//            lists the URI and bundle of each effect that lilv finds
//
//        bench_sweep_host URI RATE
//            runs one effect
#include "benches/sweep/hostFeatures.hpp"

#include <lilv/lilv.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/resize-port/resize-port.h>
#include <lv2/state/state.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <numbers>

namespace {

using namespace sweep;

constexpr std::uint32_t UsualBlock = 256, LongestBlock = 1000;

void list(const LilvPlugins* plugins) {
    LILV_FOREACH(plugins, i, plugins) {
        const LilvPlugin* plugin = lilv_plugins_get(plugins, i);
        std::printf("%s\t%s\n", lilv_node_as_uri(lilv_plugin_get_uri(plugin)),
                    lilv_file_uri_parse(lilv_node_as_uri(lilv_plugin_get_bundle_uri(plugin)), nullptr));
    }
}

} // namespace

int main(int count, char** arguments) {
    LilvWorld* world = lilv_world_new();
    lilv_world_load_all(world);
    if (count == 1) {
        list(lilv_world_get_all_plugins(world));
        return 0;
    }
    if (count != 3) return 2;
    const double rate = std::atof(arguments[2]);
    const auto node = [&](const char* uri) { return lilv_new_uri(world, uri); };
    const LilvPlugin* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), node(arguments[1]));
    if (plugin == nullptr) {
        std::puts("refused\tnot found");
        return 0;
    }

    LV2_URID_Map map{nullptr, mapUri};
    LV2_URID_Unmap unmap{nullptr, unmapUri};
    LV2_Log_Log log{nullptr, logText, logV};
    Work work;
    LV2_Worker_Schedule worker{&work, schedule};
    const std::int32_t shortest = 1, usual = UsualBlock, longest = LongestBlock, sequenceBytes = 1 << 16;
    const auto floatRate = static_cast<float>(rate);
    const auto whole = [](const char* key, const std::int32_t& value) {
        return LV2_Options_Option{LV2_OPTIONS_INSTANCE, 0,     urid(key), sizeof value,
                                  urid(LV2_ATOM__Int),  &value};
    };
    const LV2_Options_Option options[] = {whole(LV2_BUF_SIZE__minBlockLength, shortest),
                                          whole(LV2_BUF_SIZE__maxBlockLength, longest),
                                          whole(LV2_BUF_SIZE__nominalBlockLength, usual),
                                          whole(LV2_BUF_SIZE__sequenceSize, sequenceBytes),
                                          {LV2_OPTIONS_INSTANCE, 0,
                                           urid("http://lv2plug.in/ns/ext/parameters#sampleRate"),
                                           sizeof floatRate, urid(LV2_ATOM__Float), &floatRate},
                                          {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    LV2_State_Make_Path makePath{nullptr, [](LV2_State_Make_Path_Handle, const char* path) {
                                     return ::strdup((std::string("/tmp/") + path).c_str());
                                 }};
    const LV2_Feature all[] = {{LV2_URID__map, &map},
                               {LV2_URID__unmap, &unmap},
                               {LV2_LOG__log, &log},
                               {LV2_WORKER__schedule, &worker},
                               {LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options)},
                               {LV2_STATE__makePath, &makePath},
                               {LV2_STATE__loadDefaultState, nullptr},
                               {LV2_STATE__threadSafeRestore, nullptr},
                               {LV2_BUF_SIZE__boundedBlockLength, nullptr},
                               {LV2_BUF_SIZE__fixedBlockLength, nullptr},
                               {LV2_BUF_SIZE__powerOf2BlockLength, nullptr},
                               {LV2_CORE__isLive, nullptr},
                               {LV2_CORE__inPlaceBroken, nullptr},
                               {LV2_CORE__hardRTCapable, nullptr}};
    std::vector<const LV2_Feature*> features;
    for (const LV2_Feature& feature : all) {
        features.push_back(&feature);
    }
    features.push_back(nullptr);
    LilvNodes* required = lilv_plugin_get_required_features(plugin);
    LILV_FOREACH(nodes, i, required) {
        const char* uri = lilv_node_as_uri(lilv_nodes_get(required, i));
        if (std::none_of(std::begin(all), std::end(all),
                         [&](const LV2_Feature& feature) { return std::strcmp(feature.URI, uri) == 0; })) {
            std::printf("refused\trequires %s\n", uri);
            return 0;
        }
    }

    const auto runInstance = [&](bool isFirst) {
        LilvInstance* instance = lilv_plugin_instantiate(plugin, rate, features.data());
        if (instance == nullptr) {
            std::puts("refused\tno instance");
            return false;
        }
        const std::uint32_t portCount = lilv_plugin_get_num_ports(plugin);
        std::vector<float> defaults(portCount), least(portCount), most(portCount);
        lilv_plugin_get_port_ranges_float(plugin, least.data(), most.data(), defaults.data());
        std::vector<Port> ports(portCount);
        for (std::uint32_t p = 0; p < portCount; ++p) {
            const LilvPort* source = lilv_plugin_get_port_by_index(plugin, p);
            const auto isA = [&](const char* type) { return lilv_port_is_a(plugin, source, node(type)); };
            Port& port = ports[p];
            port.isInput = isA(LV2_CORE__InputPort);
            if (isA(LV2_CORE__ControlPort)) {
                port.kind = Port::Kind::Control;
                port.value = std::isnan(defaults[p]) ? 0.0F : defaults[p];
                lilv_instance_connect_port(instance, p, &port.value);
            } else if (isA(LV2_CORE__AudioPort) || isA(LV2_CORE__CVPort)) {
                port.kind = Port::Kind::Audio;
                port.plane.resize(LongestBlock);
                port.hasSignal = port.isInput && isA(LV2_CORE__AudioPort);
                lilv_instance_connect_port(instance, p, port.plane.data());
            } else if (isA(LV2_ATOM__AtomPort)) {
                port.kind = Port::Kind::Atom;
                LilvNode* size = lilv_port_get(plugin, source, node(LV2_RESIZE_PORT__minimumSize));
                const int bytes = size == nullptr ? 0 : lilv_node_as_int(size);
                port.atoms.resize(static_cast<std::size_t>(std::max(bytes, sequenceBytes)) / 8);
                port.takesNotes =
                    port.isInput && lilv_port_supports_event(plugin, source, node(LV2_MIDI__MidiEvent));
                port.prepare(false, 0, 0);
                lilv_instance_connect_port(instance, p, port.atoms.data());
            } else if (lilv_port_has_property(plugin, source, node(LV2_CORE__connectionOptional))) {
                lilv_instance_connect_port(instance, p, nullptr);
            } else {
                std::puts("refused\tport of unknown kind");
                return false;
            }
        }
        if (lilv_plugin_has_feature(plugin, node(LV2_STATE__loadDefaultState))) {
            LilvState* state = lilv_state_new_from_world(world, &map, lilv_plugin_get_uri(plugin));
            const auto set = [](const char*, void*, const void*, std::uint32_t, std::uint32_t) {};
            if (state != nullptr) lilv_state_restore(state, instance, set, nullptr, 0, features.data());
        }
        lilv_instance_activate(instance);
        const auto* works = static_cast<const LV2_Worker_Interface*>(
            lilv_instance_get_extension_data(instance, LV2_WORKER__interface));

        const LV2_URID midi = urid(LV2_MIDI__MidiEvent);
        std::uint64_t time = 0;
        const auto play = [&](const char* stage, std::uint32_t block, double seconds) {
            float peak = 0;
            long bad = 0;
            const auto blocks = static_cast<std::uint32_t>(seconds * rate / block);
            for (std::uint32_t at = 0; at < blocks; ++at, time += block) {
                const bool hasNote = at == 1 || at == blocks / 2;
                for (Port& port : ports) {
                    if (port.kind == Port::Kind::Atom) port.prepare(hasNote, at == 1 ? 0x90 : 0x80, midi);
                    if (!port.hasSignal) continue;
                    for (std::uint32_t i = 0; i < block; ++i) {
                        port.plane[i] =
                            static_cast<float>(0.25 * std::sin(2 * std::numbers::pi * 440 *
                                                               static_cast<double>(time + i) / rate));
                    }
                }
                lilv_instance_run(instance, block);
                for (const auto& answer : take(work, &Work::answered)) {
                    works->work_response(instance->lv2_handle, static_cast<std::uint32_t>(answer.size()),
                                         answer.data());
                }
                if (works != nullptr && works->end_run != nullptr) works->end_run(instance->lv2_handle);
                for (const auto& ask : take(work, &Work::asked)) {
                    if (works == nullptr) continue;
                    works->work(instance->lv2_handle, respond, &work, static_cast<std::uint32_t>(ask.size()),
                                ask.data());
                }
                for (const Port& port : ports) {
                    if (port.kind != Port::Kind::Audio || port.isInput) continue;
                    for (std::uint32_t i = 0; i < block; ++i) {
                        if (std::isfinite(port.plane[i])) {
                            peak = std::max(peak, std::abs(port.plane[i]));
                        } else {
                            ++bad;
                        }
                    }
                }
            }
            std::printf("peak\t%s\t%g\n", stage, static_cast<double>(peak));
            if (bad > 0) std::printf("bad\t%s\t%ld\n", stage, bad);
            std::fflush(stdout);
        };
        for (const std::uint32_t block :
             isFirst ? std::vector{256U, 1U, 63U, 257U, 1000U} : std::vector{256U}) {
            const std::string stage = isFirst ? std::to_string(block) : "another";
            std::printf("stage\t%s\n", stage.c_str());
            std::fflush(stdout);
            play(stage.c_str(), block, block < 16 ? 0.05 : 1);
        }
        std::puts("stage\trelease");
        std::fflush(stdout);
        lilv_instance_deactivate(instance);
        lilv_instance_free(instance);
        return true;
    };
    if (!runInstance(true) || !runInstance(false)) return 0;
    std::puts("done\t");
    std::fflush(stdout);
    std::_Exit(0); // skips the exit handlers of plug-in libraries, which are not tested here
}

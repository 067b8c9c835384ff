// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The built plug-in library, loaded as a host loads it.

#include <gtest/gtest.h> // first: Xlib has macros of common names

#include "MiniHost.hpp"
#include "Rendering.hpp"

#include "effect/dsp/Presets.hpp"
#include "effect/lv2/DisplayMessage.hpp"
#include "effect/lv2/Uris.hpp"

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>
#include <lv2/presets/presets.h>
#include <lv2/state/state.h>

#include <map>
#include <set>

namespace tonewright::effect::test {
namespace {

using P = Parameter;
using Store = std::map<LV2_URID, std::pair<LV2_URID, std::vector<std::uint8_t>>>;

constexpr std::uint32_t Block = 256;

struct Stage {
    UridTable urids;
    PluginHost host{urids};
    Signal left = Signal(8192);
    Signal right = Signal(8192);

    TimedEvent midi(std::int64_t frame, std::vector<std::uint8_t> bytes) {
        return {frame, urids(LV2_MIDI__MidiEvent), std::move(bytes)};
    }
    TimedEvent displayRequest() {
        const auto request = DisplayRequest::of(displayUrids());
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&request.object);
        return {0, request.atom.type, {bytes, bytes + sizeof(request.object)}};
    }
    DisplayUrids displayUrids() {
        const LV2_URID_Map* const map = static_cast<LV2_URID_Map*>(urids.feature()->data);
        return DisplayUrids::mapped(*map);
    }
    /// Runs blocks of silence; returns how many display frames came.
    int displayFramesIn(int blocks) {
        int count = 0;
        for (int i = 0; i < blocks; ++i) {
            host.run(left.data(), right.data(), left.data(), right.data(), Block);
            for (const auto& atom : host.atoms()) {
                count += DisplayMessage::read(atom.data(), atom.size(), displayUrids()).has_value() ? 1 : 0;
            }
        }
        return count;
    }
};

Store savedBy(PluginHost& host) {
    Store store;
    const auto* const state =
        static_cast<const LV2_State_Interface*>(host.descriptor().extension_data(LV2_STATE__interface));
    const auto keep = [](LV2_State_Handle handle, std::uint32_t key, const void* value, std::size_t size,
                         std::uint32_t type, std::uint32_t) {
        const auto* const bytes = static_cast<const std::uint8_t*>(value);
        (*static_cast<Store*>(handle))[key] = {type, {bytes, bytes + size}};
        return LV2_STATE_SUCCESS;
    };
    EXPECT_EQ(state->save(host.handle(), keep, &store, 0, nullptr), LV2_STATE_SUCCESS);
    return store;
}

void restoreInto(PluginHost& host, Store& store) {
    const auto* const state =
        static_cast<const LV2_State_Interface*>(host.descriptor().extension_data(LV2_STATE__interface));
    const auto find = [](LV2_State_Handle handle, std::uint32_t key, std::size_t* size, std::uint32_t* type,
                         std::uint32_t* flags) -> const void* {
        auto& all = *static_cast<Store*>(handle);
        const auto found = all.find(key);
        if (found == all.end()) {
            return nullptr;
        }
        *size = found->second.second.size();
        *type = found->second.first;
        *flags = LV2_STATE_IS_POD;
        return found->second.second.data();
    };
    state->restore(host.handle(), find, &store, 0, nullptr);
}

TEST(PluginRun, TakesAnyBlockSizeAndReportsItsLatency) {
    Stage stage;
    stage.left = noise(0.5F, 8192);
    stage.right = stage.left;
    for (const std::uint32_t frames : {0U, 1U, 2U, 63U, 1024U, 8192U, 0U, 4096U}) {
        stage.host.run(stage.left.data(), stage.right.data(), stage.left.data(), stage.right.data(), frames);
        EXPECT_EQ(stage.host.latency(), static_cast<float>(Processor::latencyFrames()));
        for (const float sample : stage.left) {
            ASSERT_TRUE(std::isfinite(sample));
        }
    }
}

TEST(PluginRun, WorksWithoutTheHostsUrids) {
    UridTable urids;
    PluginHost host{urids, Rate, false};
    const Signal in = noise(0.5F, 8192);
    Signal left(8192);
    Signal right(8192);
    host.run(in.data(), in.data(), left.data(), right.data(), 8192);
    EXPECT_GT(rms(left, 4096, 8192), 0.01);
    EXPECT_TRUE(host.events().empty());
}

TEST(PluginRun, PutsBackTheFloatingPointMode) {
    // Subnormals must be flushed inside and alive outside.
    Stage stage;
    stage.host.run(stage.left.data(), stage.right.data(), stage.left.data(), stage.right.data(), Block);
    volatile float small = std::numeric_limits<float>::min();
    const float half = small * 0.5F;
    EXPECT_EQ(std::fpclassify(half), FP_SUBNORMAL);
}

TEST(PluginMidi, ArrivesAtItsFrame) {
    // Cutting the block at the event must give the same sound as sending the event inside it.
    const Signal in = noise(0.3F, 4096);
    const auto play = [&in](const std::vector<std::uint32_t>& cuts) {
        Stage stage;
        Signal out(4096);
        std::uint32_t at = 0;
        for (const std::uint32_t frames : cuts) {
            std::vector<TimedEvent> events;
            if (1000 >= at && 1000 < at + frames) {
                events.push_back(stage.midi(1000 - at, {0x90, 72, 120}));
            }
            stage.host.run(in.data() + at, in.data() + at, out.data() + at, stage.right.data(), frames,
                           events);
            at += frames;
        }
        return out;
    };
    const Signal whole = play({4096});
    EXPECT_EQ(whole, play({1000, 3096}));
    EXPECT_EQ(whole, play({500, 600, 2996}));
}

TEST(PluginMidi, SurvivesBurstsAndNonsense) {
    Stage stage;
    std::vector<TimedEvent> burst;
    for (int i = 0; i < 2000; ++i) {
        burst.push_back(
            stage.midi(i / 10, {static_cast<std::uint8_t>(0x80 + i % 0x70),
                                static_cast<std::uint8_t>(i % 128), static_cast<std::uint8_t>(i % 128)}));
    }
    burst.push_back(stage.midi(250, {}));
    burst.push_back(stage.midi(250, std::vector<std::uint8_t>(300, 0xF0)));
    burst.push_back(stage.midi(100000, {0x90, 60, 1})); // after the block's end
    for (int i = 0; i < 25; ++i) {
        stage.left = noise(0.4F, 8192);
        stage.host.run(stage.left.data(), stage.left.data(), stage.left.data(), stage.right.data(), Block,
                       burst);
        for (std::uint32_t s = 0; s < Block; ++s) {
            ASSERT_TRUE(std::isfinite(stage.left[s]));
        }
    }
}

TEST(PluginMidi, SendsOnsetsAtFramesThatTheSoundDecides) {
    Signal in(48000, 0.F);
    for (const std::size_t at : {5000U, 20000U, 35000U}) {
        for (std::size_t i = at; i < in.size(); ++i) {
            in[i] += 0.5F * std::exp(-0.0004F * static_cast<float>(i - at)) *
                     std::sin(0.06F * static_cast<float>(i - at));
        }
    }
    std::vector<std::vector<std::int64_t>> found;
    for (const std::uint32_t block : {64U, 441U, 8192U}) {
        Stage stage;
        std::vector<std::int64_t> frames;
        int balance = 0;
        for (std::uint32_t at = 0; at < in.size(); at += block) {
            const auto n = std::min<std::uint32_t>(block, static_cast<std::uint32_t>(in.size()) - at);
            stage.host.run(in.data() + at, in.data() + at, stage.left.data(), stage.right.data(), n);
            for (const TimedEvent& event : stage.host.events()) {
                EXPECT_LT(event.frame, n);
                frames.push_back(at + event.frame);
                balance += event.body[0] == 0x90 ? 1 : -1;
            }
        }
        EXPECT_EQ(balance, 0);
        EXPECT_EQ(frames.size(), 6U);
        found.push_back(frames);
    }
    EXPECT_EQ(found[0], found[1]);
    EXPECT_EQ(found[0], found[2]);
}

TEST(PluginMidi, NeverWritesBeyondASmallBuffer) {
    // MiniHost throws when a byte beyond the capacity changes.
    for (const std::uint32_t capacity : {0U, 8U, 16U, 24U, 39U, 40U, 64U, 100U, 400U}) {
        Stage stage;
        stage.host.setNotifyCapacity(capacity);
        int balance = 0;
        for (int i = 0; i < 200; ++i) {
            const Signal in = i % 10 == 0 ? noise(0.8F, 4096) : Signal(4096, 0.F);
            const std::vector<TimedEvent> events{stage.displayRequest()};
            stage.host.run(in.data(), in.data(), stage.left.data(), stage.right.data(), 4096, events);
            for (const TimedEvent& event : stage.host.events()) {
                if (event.type == stage.urids(LV2_MIDI__MidiEvent)) {
                    balance += event.body[0] == 0x90 ? 1 : -1;
                }
            }
            ASSERT_GE(balance, 0);
            ASSERT_LE(balance, 1);
        }
        EXPECT_EQ(balance, 0) << "a note hangs with a buffer of " << capacity;
    }
}

TEST(PluginDisplay, SpeaksOnlyWhileItIsAsked) {
    Stage stage;
    EXPECT_EQ(stage.displayFramesIn(400), 0);
    const std::vector<TimedEvent> ask{stage.displayRequest()};
    stage.host.run(stage.left.data(), stage.right.data(), stage.left.data(), stage.right.data(), Block, ask);
    const int whileAsked = stage.displayFramesIn(186); // just below a second
    EXPECT_GE(whileAsked, 27);
    EXPECT_LE(whileAsked, 31);
    stage.displayFramesIn(4);
    EXPECT_EQ(stage.displayFramesIn(400), 0) << "it must fall silent when nobody asks";
}

TEST(PluginDisplay, TellsWhatIsHeard) {
    Stage stage;
    const Signal in = sine(1000., 0.5F, Block * 40);
    stage.host.set(P::Enabled, 0.F);
    std::optional<DisplayFrame> last;
    for (std::uint32_t i = 0; i < 40; ++i) {
        const std::vector<TimedEvent> ask{stage.displayRequest()};
        stage.host.run(in.data() + i * Block, in.data() + i * Block, stage.left.data(), stage.right.data(),
                       Block, ask);
        for (const auto& atom : stage.host.atoms()) {
            if (const auto frame = DisplayMessage::read(atom.data(), atom.size(), stage.displayUrids())) {
                last = frame;
            }
        }
    }
    ASSERT_TRUE(last);
    EXPECT_NEAR(last->inputPeaks[0], 0.5F, 0.02F);
    EXPECT_NEAR(last->outputPeaks[1], 0.5F, 0.02F);
    const auto loudest = std::max_element(last->spectrum.begin(), last->spectrum.end());
    EXPECT_NEAR(spectrumBandHertz(static_cast<std::size_t>(loudest - last->spectrum.begin())), 1000.F, 60.F);
    EXPECT_NEAR(*loudest, -6.F, 1.5F);
}

TEST(PluginState, ComesBack) {
    Stage played;
    const std::vector<TimedEvent> chord{played.midi(0, {0x90, 57, 100}), played.midi(10, {0x90, 64, 100}),
                                        played.midi(20, {0xB0, 1, 90}), played.midi(30, {0x80, 57, 0})};
    played.host.run(played.left.data(), played.right.data(), played.left.data(), played.right.data(), Block,
                    chord);
    Store store = savedBy(played.host);
    EXPECT_EQ(store.size(), 2U);

    Stage restored;
    restoreInto(restored.host, store);
    EXPECT_EQ(savedBy(restored.host), store) << "before it ever ran";
    restored.host.activate();
    restored.host.run(restored.left.data(), restored.right.data(), restored.left.data(),
                      restored.right.data(), Block);
    EXPECT_EQ(savedBy(restored.host), store) << "after it ran";

    Store nothing;
    restoreInto(restored.host, nothing);
    Stage fresh;
    EXPECT_EQ(savedBy(restored.host), savedBy(fresh.host)) << "without a stored value the default holds";

    Store damaged = store;
    for (auto& [key, value] : damaged) {
        value.second.resize(3);
    }
    restoreInto(restored.host, damaged);
    EXPECT_EQ(savedBy(restored.host), savedBy(fresh.host));
}

/// What another LV2 library reads in the built bundle.
class Description : public ::testing::Test {
  protected:
    void SetUp() override {
        world = lilv_world_new();
        LilvNode* const path = lilv_new_file_uri(world, nullptr, bundlePath("").c_str());
        lilv_world_load_bundle(world, path);
        lilv_node_free(path);
        LilvNode* const uri = lilv_new_uri(world, PluginUri);
        plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), uri);
        lilv_node_free(uri);
        ASSERT_NE(plugin, nullptr);
    }
    void TearDown() override { lilv_world_free(world); }

    LilvWorld* world = nullptr;
    const LilvPlugin* plugin = nullptr;
};

TEST_F(Description, AgreesWithTheTable) {
    ASSERT_EQ(lilv_plugin_get_num_ports(plugin), PortCount);
    std::vector<float> minimum(PortCount);
    std::vector<float> maximum(PortCount);
    std::vector<float> standard(PortCount);
    lilv_plugin_get_port_ranges_float(plugin, minimum.data(), maximum.data(), standard.data());
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        const ParameterInfo& p = parameterTable()[i];
        const std::uint32_t index = portOf(static_cast<Parameter>(i));
        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, index);
        EXPECT_EQ(lilv_node_as_string(lilv_port_get_symbol(plugin, port)), p.symbol);
        EXPECT_FLOAT_EQ(minimum[index], p.minimum) << p.symbol;
        EXPECT_FLOAT_EQ(maximum[index], p.maximum) << p.symbol;
        EXPECT_FLOAT_EQ(standard[index], p.defaultValue) << p.symbol;
        LilvScalePoints* const points = lilv_port_get_scale_points(plugin, port);
        EXPECT_EQ(lilv_scale_points_size(points), p.choices.size()) << p.symbol;
        lilv_scale_points_free(points);
    }
    EXPECT_EQ(lilv_plugin_get_latency_port_index(plugin), static_cast<std::uint32_t>(Latency));
    LilvNode* const name = lilv_plugin_get_name(plugin);
    EXPECT_STREQ(lilv_node_as_string(name), "KVRN: Orvo Tonewright Extension");
    lilv_node_free(name);
}

TEST_F(Description, StatesTheComponentCodesInTheManifest) {
    // Nothing but the manifest has been read at this point.
    LilvNode* const subject = lilv_new_uri(world, PluginUri);
    const auto stated = [this, subject](const char* property) {
        const std::string uri = std::string{ComponentVocabulary} + property;
        LilvNode* const predicate = lilv_new_uri(world, uri.c_str());
        LilvNode* const value = lilv_world_get(world, subject, predicate, nullptr);
        std::string text = value == nullptr ? "" : lilv_node_as_string(value);
        lilv_node_free(value);
        lilv_node_free(predicate);
        return text;
    };
    EXPECT_EQ(stated("componentType"), "aumf");
    EXPECT_EQ(stated("componentSubType"), "ovTw");
    EXPECT_EQ(stated("componentManufacturer"), "KVRN");
    EXPECT_EQ(stated("componentFlags"), "2");
    EXPECT_EQ(stated("displayName"), "KVRN: Orvo Tonewright Extension");
    lilv_node_free(subject);
}

TEST_F(Description, HoldsEveryPresetAsTheTableHasIt) {
    LilvNode* const presetClass = lilv_new_uri(world, LV2_PRESETS__Preset);
    LilvNodes* const presets = lilv_plugin_get_related(plugin, presetClass);
    ASSERT_EQ(lilv_nodes_size(presets), factoryPresets().size());
    UridTable urids;
    auto* const map = static_cast<LV2_URID_Map*>(urids.feature()->data);
    std::set<std::size_t> seen;
    LILV_FOREACH(nodes, i, presets) {
        const LilvNode* const preset = lilv_nodes_get(presets, i);
        lilv_world_load_resource(world, preset);
        LilvState* const state = lilv_state_new_from_world(world, map, preset);
        ASSERT_NE(state, nullptr);
        ParameterValues values = defaultValues();
        values[index(P::Enabled)] = 0.F; // a preset must leave it alone
        lilv_state_emit_port_values(
            state,
            [](const char* symbol, void* data, const void* value, std::uint32_t size, std::uint32_t) {
                const auto parameter = findParameter(symbol);
                ASSERT_TRUE(parameter) << symbol;
                ASSERT_EQ(size, sizeof(float));
                std::memcpy(&(*static_cast<ParameterValues*>(data))[index(*parameter)], value, sizeof(float));
            },
            &values);
        EXPECT_EQ(values[index(P::Enabled)], 0.F);
        const auto match = matchingPreset(values);
        ASSERT_TRUE(match) << lilv_state_get_label(state);
        EXPECT_EQ(lilv_state_get_label(state), factoryPresets()[*match].name);
        seen.insert(*match);
        for (std::size_t p = 0; p < ParameterCount; ++p) {
            EXPECT_EQ(sanitised(parameterTable()[p], values[p]), values[p]) << parameterTable()[p].symbol;
        }
        lilv_state_free(state);
    }
    EXPECT_EQ(seen.size(), factoryPresets().size());
    lilv_nodes_free(presets);
    lilv_node_free(presetClass);
}

} // namespace
} // namespace tonewright::effect::test

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The built plug-in library, loaded as a host loads it.

#include <gtest/gtest.h> // first: Xlib has macros of common names

#include "MiniHost.hpp"
#include "Rendering.hpp"

#include "effect/lv2/DisplayMessage.hpp"

#include <lv2/midi/midi.h>
#include <lv2/state/state.h>

#include <map>

namespace tonewright::effect::test {
namespace {

using P = Parameter;
using Store = std::map<LV2_URID, std::pair<LV2_URID, std::vector<std::uint8_t>>>;

constexpr std::uint32_t Block = 256;

struct Stage {
    UridTable urids;
    PluginHost host;
    Signal left = Signal(8192);
    Signal right = Signal(8192);

    explicit Stage(bool withUrids = true)
        : host{urids, Rate, withUrids} {}

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
    /// Runs one block in place.
    void run(std::span<const TimedEvent> events = {}, std::uint32_t frames = Block) {
        host.run(left.data(), right.data(), left.data(), right.data(), frames, events);
    }
    /// Returns the display frames of the last block.
    std::vector<DisplayFrame> displayFrames() {
        std::vector<DisplayFrame> frames;
        for (const auto& atom : host.atoms()) {
            if (const auto frame = DisplayMessage::read(atom.data(), atom.size(), displayUrids())) {
                frames.push_back(*frame);
            }
        }
        return frames;
    }
    /// Runs blocks of silence; returns how many display frames came.
    std::size_t displayFramesIn(int blocks) {
        std::size_t count = 0;
        for (int i = 0; i < blocks; ++i) {
            run();
            count += displayFrames().size();
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

TEST(PluginRun, TakesAnyBlockSizeAndPutsBackTheFloatingPointMode) {
    Stage stage;
    stage.left = stage.right = noise(0.5F, 8192);
    for (const std::uint32_t frames : {0U, 1U, 2U, 63U, 1024U, 8192U, 0U, 4096U}) {
        stage.run({}, frames);
        EXPECT_EQ(stage.host.latency(), static_cast<float>(Processor::latencyFrames()));
        EXPECT_TRUE(std::isfinite(peak(stage.left)));
    }
    // Subnormals are flushed inside and alive outside.
    volatile float small = std::numeric_limits<float>::min();
    const float half = small * 0.5F;
    EXPECT_EQ(std::fpclassify(half), FP_SUBNORMAL);
}

TEST(PluginRun, WorksWithoutTheHostsUrids) {
    Stage stage{false};
    stage.left = stage.right = noise(0.5F, 8192);
    stage.run({}, 8192);
    EXPECT_GT(rms(stage.left, 4096, 8192), 0.01);
    EXPECT_TRUE(stage.host.events().empty());
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
        const auto data = static_cast<std::uint8_t>(i % 128);
        burst.push_back(stage.midi(i / 10, {static_cast<std::uint8_t>(0x80 + i % 0x70), data, data}));
    }
    burst.push_back(stage.midi(250, {}));
    burst.push_back(stage.midi(250, std::vector<std::uint8_t>(300, 0xF0)));
    burst.push_back(stage.midi(100000, {0x90, 60, 1})); // after the block's end
    for (int i = 0; i < 25; ++i) {
        stage.left = noise(0.4F, 8192);
        stage.run(burst);
        ASSERT_TRUE(std::isfinite(peak(stage.left)));
    }
}

TEST(PluginMidi, NeverWritesBeyondASmallBuffer) {
    // MiniHost throws when a byte beyond the capacity changes.
    for (const std::uint32_t capacity : {0U, 8U, 16U, 24U, 39U, 40U, 64U, 100U, 400U}) {
        Stage stage;
        stage.host.setNotifyCapacity(capacity);
        int balance = 0;
        for (int i = 0; i < 200; ++i) {
            const Signal in = i % 10 == 0 ? noise(0.8F, 4096) : Signal(4096, 0.F);
            stage.host.run(in.data(), in.data(), stage.left.data(), stage.right.data(), 4096,
                           std::vector{stage.displayRequest()});
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
    EXPECT_EQ(stage.displayFramesIn(400), 0U);
    stage.run(std::vector{stage.displayRequest()});
    const auto whileAsked = stage.displayFramesIn(186); // just below a second
    EXPECT_GE(whileAsked, 27U);
    EXPECT_LE(whileAsked, 31U);
    stage.displayFramesIn(4);
    EXPECT_EQ(stage.displayFramesIn(400), 0U) << "it must fall silent when nobody asks";
}

TEST(PluginDisplay, TellsWhatIsHeard) {
    Stage stage;
    const Signal in = sine(1000., 0.5F, Block * 40);
    stage.host.set(P::Enabled, 0.F);
    DisplayFrame last;
    for (std::uint32_t i = 0; i < 40; ++i) {
        std::copy_n(in.begin() + i * Block, Block, stage.left.begin());
        stage.right = stage.left;
        stage.run(std::vector{stage.displayRequest()});
        for (const DisplayFrame& frame : stage.displayFrames()) {
            last = frame;
        }
    }
    EXPECT_NEAR(last.inputPeaks[0], 0.5F, 0.02F);
    EXPECT_NEAR(last.outputPeaks[1], 0.5F, 0.02F);
    const auto loudest = std::max_element(last.spectrum.begin(), last.spectrum.end());
    EXPECT_NEAR(spectrumBandHertz(static_cast<std::size_t>(loudest - last.spectrum.begin())), 1000.F, 60.F);
    EXPECT_NEAR(*loudest, -6.F, 1.5F);
}

TEST(PluginState, ComesBack) {
    Stage played;
    const std::vector<TimedEvent> chord{played.midi(0, {0x90, 57, 100}), played.midi(10, {0x90, 64, 100}),
                                        played.midi(20, {0xB0, 1, 90}), played.midi(30, {0x80, 57, 0})};
    played.run(chord);
    Store store = savedBy(played.host);
    EXPECT_EQ(store.size(), 2U);

    Stage restored;
    restoreInto(restored.host, store);
    EXPECT_EQ(savedBy(restored.host), store) << "before it ever ran";
    restored.host.activate();
    restored.run();
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

} // namespace
} // namespace tonewright::effect::test

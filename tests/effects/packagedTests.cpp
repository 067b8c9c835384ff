// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the bundled effect and effects from Debian packages: each makes sound, restores its state and shows
// its interface.
#include "tests/effects/EffectScreen.hpp"

using namespace platform;
using namespace platform::test;

namespace {

struct Subject {
    const char* uri;
    bool sendsMidi, hasPresets;
    bool hasInterface; // whether it has an X11 interface
};

// Chosen for the host features that they need: worker, state, MIDI input and output, three inputs, presets
// (one with a file), bounded block length, isLive, and no interface.
constexpr Subject Subjects[] = {
    {"https://tonewright.example/lv2/tonewright", true, true, true},
    {"http://lsp-plug.in/plugins/lv2/trigger_midi_stereo", true, false, true},
    {"http://gareus.org/oss/lv2/tuna#one", true, false, true},
    {"http://gareus.org/oss/lv2/fat1", false, true, true},
    {"http://gareus.org/oss/lv2/fil4#stereo", false, false, true},
    {"http://gareus.org/oss/lv2/zeroconvolv#Stereo", false, true, false},
    {"urn:zamaudio:ZamCompX2", false, true, true},
    {"http://distrho.sf.net/plugins/3BandEQ", false, true, true},
    {"http://www.niallmoody.com/ndcplugs/soulforce.htm", false, true, true},
    {"http://guitarix.sourceforge.net/plugins/gx_amp_stereo#GUITARIX_ST", false, false, true},
    {"http://drobilla.net/plugins/fomp/reverb", false, false, false},
};

class Packaged : public ToolkitTest, public ::testing::WithParamInterface<Subject> {};

} // namespace

TEST_P(Packaged, MakesSoundKeepsStateAndShowsItself) {
    const Subject& subject = GetParam();
    SCOPED_TRACE(subject.uri);
    const auto unit = makeUnit(subject.uri);
    EXPECT_EQ(!unit->MIDIOutputNames().empty(), subject.sendsMidi);
    unit->setMIDIOutputEventBlock([](auto...) { return 0; });
    EXPECT_EQ(unit->factoryPresets().has_value(), subject.hasPresets);
    const auto controller = requestScreen(*unit);
    ASSERT_TRUE(controller);
    {
        Rendering rendering(*unit, 48000, 256);
        float loudest = rendering.loudestOf(100);
        // A preset can refer to a file, which the worker loads.
        if (subject.hasPresets) unit->setCurrentPreset(unit->factoryPresets()->front());
        EXPECT_TRUE(waitFor([&] {
            loudest = std::max(loudest, rendering.loudestOf(20));
            return loudest > 1e-3F;
        }));
        EXPECT_TRUE(std::isfinite(loudest));
    }
    const auto state = unit->fullState();
    EXPECT_FALSE(state.empty());
    EXPECT_FALSE(unit->setFullState(state));
    EXPECT_TRUE(std::isfinite(Rendering(*unit, 44100, 1024).loudestOf(10)));

    EffectScreen screen(controller, 600, 400);
    if (!subject.hasInterface) {
        EXPECT_TRUE(GTK_IS_SCROLLED_WINDOW(widgetOf(*controller->view())));
        return;
    }
    // A picture has more than a few colours, and no colour fills almost all of it.
    const auto isPicture = [&] {
        const auto colours = screen.colours();
        int all = 0, most = 0;
        for (const auto& [colour, count] : colours) {
            all += count;
            most = std::max(most, count);
        }
        return colours.size() > 16 && most < all * 99 / 100;
    };
    // The window grows until the interface fits.
    EXPECT_TRUE(waitFor([&] {
        const auto socket = screen.socket();
        return socket && socket->place.width == socket->childPlace.width &&
               socket->place.height == socket->childPlace.height && isPicture();
    }));
}

TEST_P(Packaged, SoundsTheSameInAProcessOfItsOwn) {
    const auto sound = [] {
        const auto unit = makeUnit(GetParam().uri);
        unit->processor()->setOffline(true);
        if (GetParam().hasPresets) unit->setCurrentPreset(unit->factoryPresets()->front());
        Rendering rendering(*unit, 48000, 256);
        std::vector<float> all;
        for (int i = 0; i < 200; ++i) {
            rendering.block();
            const auto& out = rendering.out(0);
            all.insert(all.end(), out.begin(), out.end());
        }
        return all;
    };
    const auto inside = sound();
    EXPECT_GT(*std::ranges::max_element(inside), 1e-3F);
    const Setting where("TONEWRIGHT_EFFECT_PROCESS", "own");
    EXPECT_TRUE(sound() == inside);
}

INSTANTIATE_TEST_SUITE_P(Effects, Packaged, ::testing::ValuesIn(Subjects));

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The built panel library on a real (virtual) display, inside a window that a host gave it.

#include <gtest/gtest.h> // first: Xlib has macros of common names

#include "MiniHost.hpp"
#include "Rendering.hpp"

#include "effect/dsp/Presets.hpp"
#include "effect/lv2/DisplayMessage.hpp"
#include "effect/ui/Layout.hpp"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <ctime>
#include <set>

namespace tonewright::effect::test {
namespace {

using P = Parameter;

struct Stage {
    UridTable urids;
    PanelHost host;
    explicit Stage(PanelHost::Options options = {})
        : host{urids, options} {
        resizeParent(NaturalWidth, NaturalHeight);
    }

    Layout layout() const {
        XWindowAttributes attributes{};
        XGetWindowAttributes(host.display(), host.window(), &attributes);
        return layOut(attributes.width, attributes.height);
    }
    Point middleOf(ControlKind kind, P parameter = P::Drive) const {
        for (const PanelControl& control : layout().controls) {
            if (control.kind == kind && (kind != ControlKind::Knob || control.parameter == parameter)) {
                return control.area.centre();
            }
        }
        return {};
    }
    void resizeParent(int width, int height) {
        XResizeWindow(host.display(), host.parent(), static_cast<unsigned>(width),
                      static_cast<unsigned>(height));
        settle();
    }
    void settle() {
        XSync(host.display(), False);
        for (int i = 0; i < 4; ++i) {
            host.idleFor(0.04);
        }
    }
    std::vector<std::uint32_t> picture() {
        settle();
        return host.picture();
    }
    /// Returns the last value written to a control, or NaN.
    float written(P parameter) const {
        float value = std::nanf("");
        for (const auto& write : host.writes) {
            if (write.port == portOf(parameter)) {
                value = write.value();
            }
        }
        return value;
    }
    void type(std::initializer_list<KeySym> keys) {
        for (const KeySym key : keys) {
            host.key(key);
        }
        settle();
    }
    void drag(int x, int y, unsigned state) {
        host.move(x, y, state);
        host.idle();
    }
    void click(Point p, unsigned button = Button1, unsigned state = 0) {
        for (const int type : {ButtonPress, ButtonRelease}) {
            host.button(type, static_cast<int>(p.x), static_cast<int>(p.y), button, state);
        }
        host.idle();
    }
    int requests() const {
        return static_cast<int>(std::count_if(host.writes.begin(), host.writes.end(),
                                              [](const auto& write) { return write.port == Control; }));
    }
    void sendFrame(float level) {
        const auto* const map = static_cast<LV2_URID_Map*>(urids.feature()->data);
        DisplayFrame frame;
        frame.inputPeaks = frame.outputPeaks = {level, level};
        frame.spectrum.fill(-20.F - 40.F * level);
        frame.cutoffHertz = 500.F + 4000.F * level;
        const auto message = DisplayMessage::of(frame, DisplayUrids::mapped(*map));
        host.sendAtom({reinterpret_cast<const std::uint8_t*>(&message), sizeof(message)});
    }
};

TEST(Panel, DrawsItselfAndShowsValues) {
    Stage stage;
    EXPECT_EQ(stage.host.askedWidth, NaturalWidth);
    const auto first = stage.picture();
    ASSERT_EQ(first.size(), static_cast<std::size_t>(NaturalWidth * NaturalHeight));
    EXPECT_GT(std::set(first.begin(), first.end()).size(), 100U) << "hardly anything is drawn";
    EXPECT_EQ(stage.picture(), first) << "at rest it stays as it is";
    stage.host.send(P::Cutoff, 200.F);
    const auto second = stage.picture();
    EXPECT_NE(first, second);
    stage.host.send(P::Cutoff, info(P::Cutoff).defaultValue);
    EXPECT_EQ(stage.picture(), first) << "drawing is exact: the same values look the same";
}

TEST(Panel, FitsFromSmallToLarge) {
    for (const auto& [width, height] : {std::pair{420, 260}, {1600, 900}, {500, 700}, {900, 500}}) {
        const Layout layout = layOut(width, height);
        EXPECT_EQ(layout.controls.size(), 4 + 5 + 18U);
        for (const PanelControl& control : layout.controls) {
            EXPECT_GE(control.area.x, 0.);
            EXPECT_GE(control.area.y, 0.);
            EXPECT_LE(control.area.right(), width);
            EXPECT_LE(control.area.bottom(), height);
            for (const PanelControl& other : layout.controls) {
                EXPECT_TRUE(&control == &other || !control.area.inset(0.01).meets(other.area))
                    << width << "x" << height;
            }
        }
        EXPECT_GT(layout.display.height, 40.);
    }
}

TEST(Panel, OpensWithWhateverTheHostOffers) {
    for (int bits = 0; bits < 8; ++bits) {
        PanelHost::Options options;
        options.withUrids = (bits & 1) != 0;
        options.withParent = (bits & 2) != 0;
        options.withResize = (bits & 4) != 0;
        options.scaleFactor = 2.F;
        Stage stage{options};
        EXPECT_EQ(stage.host.idle(), 0) << bits;
        if (options.withResize && options.withUrids) {
            EXPECT_EQ(stage.host.askedWidth, 2 * NaturalWidth);
            EXPECT_EQ(stage.host.askedHeight, 2 * NaturalHeight);
        }
    }
}

TEST(Panel, WritesWhatTheHandDrags) {
    Stage stage;
    const Point knob = stage.middleOf(ControlKind::Knob, P::Drive);
    const auto x = static_cast<int>(knob.x);
    const auto y = static_cast<int>(knob.y);
    stage.host.button(ButtonPress, x, y);
    stage.drag(x, y - 60, Button1Mask);
    const float coarse = stage.written(P::Drive);
    EXPECT_NEAR(coarse, 6.F + 36.F * 60.F / 180.F, 1.F);
    stage.drag(x, y - 80, Button1Mask | ShiftMask);
    EXPECT_NEAR(stage.written(P::Drive) - coarse, 36.F * 2.F / 180.F, 0.15F) << "fine";
    stage.drag(x, y - 5000, Button1Mask);
    EXPECT_EQ(stage.written(P::Drive), 36.F);
    stage.host.button(ButtonRelease, x, y - 5000);
    stage.drag(x, y, 0);
    EXPECT_EQ(stage.written(P::Drive), 36.F) << "let go is let go";

    stage.click(knob);
    stage.click(knob); // 20 ms later
    EXPECT_EQ(stage.written(P::Drive), info(P::Drive).defaultValue);

    stage.host.writes.clear();
    stage.click(knob, Button4);
    EXPECT_GT(stage.written(P::Drive), info(P::Drive).defaultValue);
    const float once = stage.written(P::Drive) - info(P::Drive).defaultValue;
    stage.click(knob, Button5, ControlMask);
    EXPECT_NEAR(stage.written(P::Drive), info(P::Drive).defaultValue + 0.9F * once, 0.01F);
    stage.click(stage.middleOf(ControlKind::Power));
    EXPECT_EQ(stage.written(P::Enabled), 0.F);
}

TEST(Panel, WorksByKeyboard) {
    Stage stage;
    const auto plain = stage.picture();
    XSetInputFocus(stage.host.display(), stage.host.window(), RevertToParent, CurrentTime);
    XSync(stage.host.display(), False);
    stage.host.key(XK_Tab);
    EXPECT_NE(stage.picture(), plain) << "the focus must show";
    // The order: three preset controls, power, then the sections; the shape is the first selector.
    stage.type({XK_Tab, XK_Tab, XK_Tab, XK_Tab, XK_Down});
    EXPECT_EQ(stage.written(P::Shape), 2.F);
    stage.type({XK_Tab, XK_End}); // Drive
    EXPECT_EQ(stage.written(P::Drive), 36.F);
    stage.type({XK_Home, XK_Up});
    EXPECT_NEAR(stage.written(P::Drive), 0.36F, 0.001F);
    stage.type({XK_1, XK_2, XK_period, XK_5, XK_Return});
    EXPECT_EQ(stage.written(P::Drive), 12.5F) << "typed";
    stage.type({XK_Delete});
    EXPECT_EQ(stage.written(P::Drive), info(P::Drive).defaultValue);
    stage.host.key(XK_Tab, ShiftMask);
    stage.type({XK_Return, XK_Down, XK_Return}); // opens the list at Tube
    EXPECT_EQ(stage.written(P::Shape), 3.F);
}

TEST(Panel, AppliesPresetsThroughThePorts) {
    Stage stage;
    const auto before = stage.picture();
    stage.click(stage.middleOf(ControlKind::PresetMenu));
    const auto open = stage.picture();
    EXPECT_NE(open, before) << "the menu must show";
    stage.type({XK_Down, XK_Down, XK_Down, XK_Return});
    ParameterValues values = defaultValues();
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        const float value = stage.written(static_cast<P>(i));
        values[i] = std::isnan(value) ? values[i] : value;
    }
    EXPECT_EQ(matchingPreset(values), 3U);
    EXPECT_TRUE(std::isnan(stage.written(P::Enabled)));
    stage.click(stage.middleOf(ControlKind::NextPreset));
    EXPECT_EQ(stage.written(P::Decay), factoryPresets()[4].values[index(P::Decay)]);
}

TEST(Panel, AsksForTheSignalAndShowsIt) {
    Stage stage;
    const auto silent = stage.picture();
    stage.host.idleFor(1.2);
    EXPECT_GE(stage.requests(), 2);
    EXPECT_LE(stage.requests(), 5);
    stage.sendFrame(0.8F);
    EXPECT_NE(stage.picture(), silent);
}

TEST(Panel, RestsWhileItCannotBeSeen) {
    Stage stage;
    const auto measure = [&stage](double seconds) {
        stage.host.writes.clear();
        const std::clock_t before = std::clock(); // processor time
        for (int i = 0; i < static_cast<int>(seconds * 30.); ++i) {
            stage.sendFrame(static_cast<float>(i % 7) / 7.F);
            stage.host.idleFor(0.034);
        }
        return static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / seconds;
    };
    const double visible = measure(2.);
    EXPECT_GT(stage.requests(), 0);
    // The parent alone goes: X tells the panel nothing about that.
    XUnmapWindow(stage.host.display(), stage.host.parent());
    stage.settle();
    stage.host.idleFor(0.5);
    const double hidden = measure(2.);
    EXPECT_EQ(stage.requests(), 0) << "it must not ask for what nobody sees";
#if defined(TONEWRIGHT_ASAN) || defined(TONEWRIGHT_TSAN)
    constexpr double Rest = 0.02; // a detector makes the test's own part dearer
#else
    constexpr double Rest = 0.005;
#endif
    EXPECT_LT(hidden, Rest) << "share of a core, visible: " << visible;
    EXPECT_LT(hidden, 0.5 * visible);
    XMapWindow(stage.host.display(), stage.host.parent());
    stage.settle();
    measure(0.6);
    EXPECT_GT(stage.requests(), 0) << "it comes back";
    // A window in front hides it as well.
    const Window cover = XCreateSimpleWindow(stage.host.display(), DefaultRootWindow(stage.host.display()), 0,
                                             0, 1200, 900, 0, 0, 0);
    XMapRaised(stage.host.display(), cover);
    stage.settle();
    measure(0.6);
    EXPECT_EQ(stage.requests(), 0) << "behind another window";
    XDestroyWindow(stage.host.display(), cover);
}

TEST(Panel, LivesInAParentThatIsMovedAndMappedLater) {
    PanelHost::Options options;
    options.parentMapped = false;
    Stage stage{options};
    stage.settle();
    EXPECT_EQ(stage.requests(), 0);
    Display* const display = stage.host.display();
    const Window frame = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 900, 600, 0, 0, 0);
    XMapWindow(display, frame);
    XReparentWindow(display, stage.host.parent(), frame, 10, 10);
    stage.resizeParent(640, 400);
    XMapWindow(display, stage.host.parent());
    const auto pixels = stage.picture();
    EXPECT_EQ(pixels.size(), 640U * 400U);
    EXPECT_GT(std::set(pixels.begin(), pixels.end()).size(), 100U);
    EXPECT_GT(stage.requests(), 0);
}

TEST(Panel, OutlivesItsWindow) {
    static int foreign = 0;
    XSetErrorHandler([](Display*, XErrorEvent*) { return ++foreign; });
    {
        Stage stage;
        stage.settle();
        XDestroyWindow(stage.host.display(), stage.host.parent());
        XSync(stage.host.display(), False);
        int answer = 0;
        for (int i = 0; i < 50 && answer == 0; ++i) {
            stage.sendFrame(0.5F);
            stage.host.idleFor(0.04);
            answer = stage.host.idle();
        }
        EXPECT_NE(answer, 0) << "the host is told";
        stage.sendFrame(0.2F);
        stage.host.idle();
    }
    EXPECT_EQ(foreign, 0) << "the panel's own errors must not reach the host";
    const XErrorHandler after = XSetErrorHandler(nullptr);
    Display* const display = XOpenDisplay(nullptr);
    XSetErrorHandler(after);
    XMapWindow(display, 0x7FFFFFFF);
    XSync(display, False);
    EXPECT_EQ(foreign, 1) << "the host's handler is in its place again";
    XCloseDisplay(display);
    XSetErrorHandler(nullptr);
}

} // namespace
} // namespace tonewright::effect::test

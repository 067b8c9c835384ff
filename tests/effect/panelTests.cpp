// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the built panel library on a virtual display, inside a window that the test provides as a host does.

#include "Bundle.hpp"

#include "effect/dsp/Presets.hpp"
#include "effect/lv2/DisplayMessage.hpp"
#include "effect/ui/Layout.hpp"

#include <X11/Xutil.h>
#include <lv2/atom/atom.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>

namespace tonewright::effect::test {
namespace {

using P = Parameter;

struct Options {
    bool withUrids = true, withParent = true, withResize = true;
    float scaleFactor = 0.F; ///< 0: not specified
};

/// The built panel inside a window of the test.
class Stage : tonewright::test::Uncopied {
  public:
    explicit Stage(Options options = {}) {
        parent = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 300, 200, 0, 0, 0);
        XMapWindow(display, parent);
        XSync(display, False);
        // NOLINTNEXTLINE(performance-no-int-to-ptr): LV2 passes an X window's number as a pointer
        const LV2_Feature parentFeature{LV2_UI__parent, reinterpret_cast<void*>(parent)};
        LV2UI_Resize resize{this, [](LV2UI_Feature_Handle self, int width, int height) {
                                auto& stage = *static_cast<Stage*>(self);
                                stage.askedWidth = width;
                                stage.askedHeight = height;
                                return 0;
                            }};
        const LV2_Feature resizeFeature{LV2_UI__resize, &resize};
        const LV2_Options_Option optionList[] = {{LV2_OPTIONS_INSTANCE, 0, urids(LV2_UI__scaleFactor),
                                                  sizeof(float), urids(LV2_ATOM__Float),
                                                  &options.scaleFactor},
                                                 {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
        const LV2_Feature optionsFeature{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(optionList)};
        std::vector<const LV2_Feature*> features;
        for (const auto& [offered, feature] : {std::pair{options.withUrids, urids.feature()},
                                               {options.withParent, &parentFeature},
                                               {options.withResize, &resizeFeature},
                                               {options.scaleFactor > 0.F, &optionsFeature}}) {
            if (offered) features.push_back(feature);
        }
        features.push_back(nullptr);
        const auto write = [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size,
                              std::uint32_t format, const void* data) {
            auto& stage = *static_cast<Stage*>(self);
            float value = 0.F;
            if (format == 0 && size == sizeof(value)) {
                std::memcpy(&value, data, sizeof(value));
                stage._written[port] = value;
            }
            stage.requests += port == Control ? 1 : 0;
        };
        _handle = _library->instantiate(_library.get(), PluginUri, bundlePath().c_str(), write, this,
                                        &_widget, features.data());
        if (_handle == nullptr) {
            throw std::runtime_error{"no panel"};
        }
        _idle = static_cast<const LV2UI_Idle_Interface*>(_library->extension_data(LV2_UI__idleInterface));
        const auto defaults = defaultValues();
        for (std::size_t i = 0; i < ParameterCount; ++i) send(static_cast<P>(i), defaults[i]);
        resizeParent(NaturalWidth, NaturalHeight);
    }
    ~Stage() {
        _library->cleanup(_handle);
        XCloseDisplay(display);
    }

    [[nodiscard]] Window window() const { return reinterpret_cast<Window>(_widget); }
    void resizeParent(int width, int height) {
        XResizeWindow(display, parent, static_cast<unsigned>(width), static_cast<unsigned>(height));
        settle();
    }
    /// Calls the panel's idle function and returns its result.
    int idle() { return _idle->idle(_handle); }
    /// Calls idle() about 30 times per second for `seconds`.
    void idleFor(double seconds) {
        for (int i = 0; i < static_cast<int>(seconds * 30.) && idle() == 0; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(33));
        }
    }
    void settle() {
        XSync(display, False);
        for (int i = 0; i < 4; ++i) idleFor(0.04);
    }

    void send(P parameter, float value) {
        _library->port_event(_handle, portOf(parameter), sizeof(value), 0, &value);
    }
    void sendFrame(float level) {
        DisplayFrame frame;
        frame.inputPeaks = frame.outputPeaks = {level, level};
        frame.spectrum.fill(-20.F - 40.F * level);
        frame.cutoffHertz = 500.F + 4000.F * level;
        const auto message = DisplayMessage::of(frame, DisplayUrids::mapped(urids.map()));
        _library->port_event(_handle, Notify, sizeof(message), urids(LV2_ATOM__eventTransfer), &message);
    }
    /// Returns the last value written to a control since forgetWritten(), or NaN.
    [[nodiscard]] float written(P parameter) const {
        const auto found = _written.find(portOf(parameter));
        return found == _written.end() ? std::nanf("") : found->second;
    }
    void forgetWritten() { _written.clear(); }

    /// Runs xdotool with `commands`, in which $W is the panel's window.
    void input(const std::string& commands) {
        const std::string tool = "W=" + std::to_string(window()) + "; xdotool " + commands;
        ASSERT_EQ(std::system(tool.c_str()), 0);
        settle();
    }
    void type(const std::string& keys) { input("key --window $W " + keys); }
    void click(Point at, const std::string& buttons = "click 1") { input(pointAt(at) + buttons); }
    /// Returns the xdotool command that moves the pointer to `at`.
    [[nodiscard]] static std::string pointAt(Point at) {
        return "mousemove --window $W " + std::to_string(static_cast<int>(at.x)) + " " +
               std::to_string(static_cast<int>(at.y)) + " ";
    }
    [[nodiscard]] Point middleOf(ControlKind kind, P parameter = P::Drive) const {
        XWindowAttributes attributes{};
        XGetWindowAttributes(display, window(), &attributes);
        for (const PanelControl& control : layOut(attributes.width, attributes.height).controls) {
            if (control.kind == kind && (kind != ControlKind::Knob || control.parameter == parameter)) {
                return control.area.centre();
            }
        }
        return {};
    }

    /// Returns the window's pixels as 0xRRGGBB, row by row.
    std::vector<std::uint32_t> picture() {
        settle();
        XWindowAttributes attributes{};
        XGetWindowAttributes(display, window(), &attributes);
        XImage* const image = XGetImage(display, window(), 0, 0, static_cast<unsigned>(attributes.width),
                                        static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
        if (image == nullptr) return {};
        std::vector<std::uint32_t> pixels;
        for (int i = 0; i < image->width * image->height; ++i) {
            const auto pixel = XGetPixel(image, i % image->width, i / image->width);
            pixels.push_back(static_cast<std::uint32_t>(pixel & 0xFFFFFFU));
        }
        XDestroyImage(image);
        return pixels;
    }

    UridTable urids;
    Display* const display = XOpenDisplay(nullptr);
    Window parent = 0;
    int requests = 0; ///< how often the panel asked for display frames
    int askedWidth = 0, askedHeight = 0;

  private:
    Library<LV2UI_Descriptor> _library{"tonewright_ui.so", "lv2ui_descriptor"};
    LV2UI_Handle _handle = nullptr;
    LV2UI_Widget _widget = nullptr;
    const LV2UI_Idle_Interface* _idle = nullptr;
    std::map<std::uint32_t, float> _written; ///< by port
};

TEST(Panel, DrawsItselfAndShowsValues) {
    Stage stage;
    EXPECT_EQ(stage.askedWidth, NaturalWidth);
    const auto first = stage.picture();
    ASSERT_EQ(first.size(), static_cast<std::size_t>(NaturalWidth * NaturalHeight));
    EXPECT_GT(std::set(first.begin(), first.end()).size(), 100U) << "hardly anything is drawn";
    EXPECT_EQ(stage.picture(), first) << "the picture does not change at rest";
    stage.send(P::Cutoff, 200.F);
    const auto second = stage.picture();
    EXPECT_NE(first, second);
    stage.send(P::Cutoff, info(P::Cutoff).defaultValue);
    EXPECT_EQ(stage.picture(), first) << "drawing is exact: the same values look the same";
}

TEST(Panel, FitsFromSmallToLarge) {
    for (const auto& [width, height] : {std::pair{420, 260}, {1600, 900}, {500, 700}, {900, 500}}) {
        const Layout layout = layOut(width, height);
        EXPECT_EQ(layout.controls.size(), 4 + 5 + 18U);
        for (const PanelControl& control : layout.controls) {
            EXPECT_TRUE(control.area.x >= 0. && control.area.y >= 0. && control.area.right() <= width &&
                        control.area.bottom() <= height);
            for (const PanelControl& other : layout.controls) {
                EXPECT_TRUE(&control == &other || !control.area.inset(0.01).meets(other.area)) << width;
            }
        }
        EXPECT_GT(layout.display.height, 40.);
    }
}

TEST(Panel, OpensWithWhateverTheHostOffers) {
    for (int bits = 0; bits < 8; ++bits) {
        const Options options{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, 2.F};
        Stage stage{options};
        EXPECT_EQ(stage.idle(), 0) << bits;
        if (options.withResize && options.withUrids) {
            EXPECT_EQ(stage.askedWidth, 2 * NaturalWidth);
            EXPECT_EQ(stage.askedHeight, 2 * NaturalHeight);
        }
    }
}

TEST(Panel, WritesWhatTheHandDrags) {
    Stage stage;
    const Point knob = stage.middleOf(ControlKind::Knob, P::Drive);
    const auto above = [&knob](double pixels) { return Stage::pointAt({knob.x, knob.y - pixels}); };
    stage.input(Stage::pointAt(knob) + "mousedown 1");
    stage.input(above(60));
    const float coarse = stage.written(P::Drive);
    EXPECT_NEAR(coarse, 6.F + 36.F * 60.F / 180.F, 1.F);
    stage.input("keydown shift " + above(80) + "keyup shift");
    EXPECT_NEAR(stage.written(P::Drive) - coarse, 36.F * 2.F / 180.F, 0.15F) << "with Shift";
    stage.input(above(knob.y));
    EXPECT_EQ(stage.written(P::Drive), 36.F);
    stage.input("mouseup 1");
    stage.input(Stage::pointAt(knob));
    EXPECT_EQ(stage.written(P::Drive), 36.F) << "a released knob does not move";
    stage.click(knob, "click --repeat 2 --delay 20 1");
    EXPECT_EQ(stage.written(P::Drive), info(P::Drive).defaultValue);
    stage.forgetWritten();
    stage.click(knob, "click 4");
    EXPECT_GT(stage.written(P::Drive), info(P::Drive).defaultValue);
    const float once = stage.written(P::Drive) - info(P::Drive).defaultValue;
    stage.click(knob, "keydown ctrl click 5 keyup ctrl");
    EXPECT_NEAR(stage.written(P::Drive), info(P::Drive).defaultValue + 0.9F * once, 0.01F);
    stage.click(stage.middleOf(ControlKind::Power));
    EXPECT_EQ(stage.written(P::Enabled), 0.F);
}

TEST(Panel, WorksByKeyboard) {
    Stage stage;
    const auto plain = stage.picture();
    XSetInputFocus(stage.display, stage.window(), RevertToParent, CurrentTime);
    XSync(stage.display, False);
    stage.type("Tab");
    EXPECT_NE(stage.picture(), plain) << "the focus must show";
    // The tab order: three preset controls, power, then the sections. The shape is the first selector.
    stage.type("Tab Tab Tab Tab Down");
    EXPECT_EQ(stage.written(P::Shape), 2.F);
    stage.type("Tab End"); // Drive
    EXPECT_EQ(stage.written(P::Drive), 36.F);
    stage.type("Home Up");
    EXPECT_NEAR(stage.written(P::Drive), 0.36F, 0.001F);
    stage.type("1 2 period 5 Return");
    EXPECT_EQ(stage.written(P::Drive), 12.5F) << "typed";
    stage.type("Delete");
    EXPECT_EQ(stage.written(P::Drive), info(P::Drive).defaultValue);
    stage.type("shift+Tab Return Down Return"); // opens the list, at Tube
    EXPECT_EQ(stage.written(P::Shape), 3.F);
}

TEST(Panel, AppliesPresetsThroughThePorts) {
    Stage stage;
    const auto before = stage.picture();
    stage.click(stage.middleOf(ControlKind::PresetMenu));
    const auto open = stage.picture();
    EXPECT_NE(open, before) << "the menu must show";
    stage.type("Down Down Down Return");
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
    stage.idleFor(1.2);
    EXPECT_GE(stage.requests, 2);
    EXPECT_LE(stage.requests, 5);
    stage.sendFrame(0.8F);
    EXPECT_NE(stage.picture(), silent);
}

TEST(Panel, RestsWhileItCannotBeSeen) {
    Stage stage;
    const auto measure = [&stage](double seconds) {
        stage.requests = 0;
        const std::clock_t before = std::clock(); // processor time
        for (int i = 0; i < static_cast<int>(seconds * 30.); ++i) {
            stage.sendFrame(static_cast<float>(i % 7) / 7.F);
            stage.idleFor(0.034);
        }
        return static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / seconds;
    };
    const double visible = measure(2.);
    EXPECT_GT(stage.requests, 0);
    // Only the parent is hidden; X does not report this to the panel.
    XUnmapWindow(stage.display, stage.parent);
    stage.settle();
    stage.idleFor(0.5);
    const double hidden = measure(2.);
    EXPECT_EQ(stage.requests, 0) << "a hidden panel requests no frames";
#if defined(TONEWRIGHT_ASAN) || defined(TONEWRIGHT_TSAN)
    constexpr double Rest = 0.02; // the sanitizer makes the test itself use more time
#else
    constexpr double Rest = 0.005;
#endif
    EXPECT_LT(hidden, std::min(Rest, 0.5 * visible)) << "share of a core, visible: " << visible;
    XMapWindow(stage.display, stage.parent);
    stage.settle();
    measure(0.6);
    EXPECT_GT(stage.requests, 0) << "requests resume";
    // A window in front also hides the panel.
    const Window cover =
        XCreateSimpleWindow(stage.display, DefaultRootWindow(stage.display), 0, 0, 1200, 900, 0, 0, 0);
    XMapRaised(stage.display, cover);
    stage.settle();
    measure(0.6);
    EXPECT_EQ(stage.requests, 0) << "behind another window";
    XDestroyWindow(stage.display, cover);
}

TEST(Panel, OutlivesItsWindow) {
    static int foreign = 0;
    XSetErrorHandler([](Display*, XErrorEvent*) { return ++foreign; });
    {
        Stage stage;
        stage.settle();
        XDestroyWindow(stage.display, stage.parent);
        XSync(stage.display, False);
        int answer = 0;
        for (int i = 0; i < 50 && answer == 0; ++i) {
            stage.sendFrame(0.5F);
            stage.idleFor(0.04);
            answer = stage.idle();
        }
        EXPECT_NE(answer, 0) << "the host is informed";
        stage.sendFrame(0.2F);
        stage.idle();
    }
    EXPECT_EQ(foreign, 0) << "the panel's own errors must not reach the host";
    const XErrorHandler after = XSetErrorHandler(nullptr);
    Display* const display = XOpenDisplay(nullptr);
    XSetErrorHandler(after);
    XMapWindow(display, 0x7FFFFFFF);
    XSync(display, False);
    EXPECT_EQ(foreign, 1) << "the host's handler is restored";
    XCloseDisplay(display);
    XSetErrorHandler(nullptr);
}

} // namespace
} // namespace tonewright::effect::test

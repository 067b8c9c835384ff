// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The effect's screen: its own interface in the panel, the plain one, and interfaces that fail.
#include "tests/effects/EffectScreen.hpp"

using namespace platform;
using namespace platform::test;

namespace {

constexpr std::uint32_t GainPort = 4;
constexpr unsigned long Green = 0x20c040, Blue = 0x2040c0; // of the fixture

// Finds the first widget, `widget` or below it, for which the predicate holds.
GtkWidget* find(GtkWidget* widget, bool (*predicate)(GtkWidget*)) {
    if (predicate(widget)) return widget;
    GtkWidget* found = nullptr;
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr && found == nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        found = find(child, predicate);
    }
    return found;
}

GtkWidget* areaOf(UIViewController& controller) {
    return find(widgetOf(*controller.view()),
                [](GtkWidget* widget) -> bool { return GTK_IS_DRAWING_AREA(widget); });
}

// A fixture's screen in a window of 400 by 300.
struct Opened {
    explicit Opened(const std::string& name)
        : unit(makeUnit("urn:tonewright:test:" + name)) {}
    void waitDrawn() const {
        EXPECT_TRUE(waitUntil([&] { return screen.colours()[Green] > 0; }));
    }
    [[nodiscard]] bool hasKeyboard() const { return screen.focusedWindow() == screen.socket()->child; }
    void takeKeyboard() const {
        gtk_root_set_focus(gtk_widget_get_root(areaOf(*controller)), nullptr);
        gtk_widget_grab_focus(areaOf(*controller));
        EXPECT_TRUE(waitUntil([&] { return hasKeyboard(); }));
    }
    static void press(const std::string& keys) { ASSERT_EQ(std::system(("xdotool key " + keys).c_str()), 0); }
    // The interface answers any key that it receives with a gain of 3.
    [[nodiscard]] bool hears(const std::string& keys) const {
        unit->setParameterValue(GainPort, 1);
        press(keys);
        return waitUntil([&] { return unit->parameterValue(GainPort) == 3.0F; });
    }
    std::shared_ptr<AUAudioUnit> unit;
    std::shared_ptr<UIViewController> controller = requestScreen(*unit);
    EffectScreen screen{controller, 400, 300};
};

} // namespace

using Interface = ToolkitTest;
using PlainInterface = ToolkitTest;

TEST_F(Interface, IsShownInThePanelAndFollowsIt) {
    const Opened opened("gain");
    const auto& controller = opened.controller;
    const auto& screen = opened.screen;
    const auto fills = [&](int width, int height) {
        const auto socket = screen.socket();
        return socket && socket->isVisible && socket->place.width == width &&
               socket->place.height == height &&
               socket->childPlace == CGRect{0, 0, socket->place.width, socket->place.height};
    };
    EXPECT_TRUE(waitUntil([&] { return fills(400, 300); }));
    EXPECT_TRUE(waitUntil([&] { return screen.colours()[Green] == 400 * 300; }));
    for (const int width : {640, 301, 400}) {
        screen.resize(width, width - 100);
        EXPECT_TRUE(waitUntil([&] { return fills(width, width - 100); })) << width;
    }
    screen.effect().setHidden(true);
    EXPECT_TRUE(waitUntil([&] { return !screen.socket()->isVisible; }));
    screen.resize(500, 200);
    screen.effect().setHidden(false);
    EXPECT_TRUE(waitUntil([&] { return fills(500, 200); }));
    screen.panel().setHidden(true);
    EXPECT_TRUE(waitUntil([&] { return !screen.socket()->isVisible; }));
    screen.panel().setHidden(false);
    EXPECT_TRUE(waitUntil([&] { return fills(500, 200); }));
    // Out of the window and in again.
    auto view = controller->view();
    view->removeFromSuperview();
    EXPECT_TRUE(waitUntil([&] { return !screen.socket(); }));
    screen.panel().addSubview(view);
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    view->setFrame({-100, 20, 300, 120}); // partly outside: cut off, not squeezed
    EXPECT_TRUE(waitUntil([&] {
        const auto socket = screen.socket();
        return socket && socket->isVisible && socket->place.width == 200 && socket->place.height == 120 &&
               socket->childPlace.x == -100 && socket->childPlace.width == 300;
    }));
}

TEST_F(Interface, HearsOfValuesAndSetsThem) {
    const Opened opened("gain");
    opened.waitDrawn();
    opened.unit->setParameterValue(GainPort, 0.5F);
    EXPECT_TRUE(waitUntil([&] { return opened.screen.colours()[Blue] > 0; }));
    opened.unit->setParameterValue(GainPort, 0.25F); // which the interface answers by 0.75
    EXPECT_TRUE(waitUntil([&] { return opened.unit->parameterValue(GainPort) == 0.75F; }));
    opened.unit->setParameterValue(GainPort, 0.125F); // which it answers by more than the control allows
    EXPECT_TRUE(waitUntil([&] { return opened.unit->parameterValue(GainPort) == 4.0F; }));
}

TEST_F(Interface, TakesTheKeyboardWithTheFocusAndEscapeGivesItBack) {
    const Opened opened("gain");
    opened.waitDrawn();
    opened.screen.focusWindow();
    EXPECT_FALSE(opened.hasKeyboard());
    for (int round = 0; round < 2; ++round) {
        opened.takeKeyboard();
        EXPECT_TRUE(opened.hears("x"));
        EXPECT_TRUE(opened.hears("Escape"));
        EXPECT_TRUE(waitUntil([&] { return !opened.hasKeyboard(); }));
    }
}

TEST_F(Interface, ShowsTheFocusFromTheFirstKeyThatBringsIt) {
    const Opened opened("gain");
    const auto& screen = opened.screen;
    EXPECT_TRUE(waitUntil([&] { return screen.colours()[Green] == 400 * 300; }));
    screen.focusWindow();
    auto* window = GTK_WINDOW(gtk_widget_get_root(widgetOf(screen.panel())));
    gtk_window_set_focus(window, nullptr);
    gtk_window_set_focus_visible(window, FALSE); // as after a click
    ASSERT_EQ(std::system("xdotool key Tab"), 0);
    const auto leavesTheRing = [&] { return screen.socket()->place == CGRect{4, 4, 392, 292}; };
    EXPECT_TRUE(waitUntil(leavesTheRing));
    EXPECT_EQ(screen.focusedWindow(), screen.socket()->child);
}

TEST_F(Interface, LeavesTheWindowsOwnKeysToTheWindow) {
    const Opened opened("gain");
    opened.waitDrawn();
    int spaces = 0;
    GtkEventController* keys = gtk_event_controller_key_new();
    g_signal_connect(keys, "key-pressed",
                     G_CALLBACK(+[](GtkEventControllerKey*, guint key, guint, GdkModifierType, int* count) {
                         *count += key == GDK_KEY_space ? 1 : 0;
                         return FALSE;
                     }),
                     &spaces);
    gtk_widget_add_controller(GTK_WIDGET(gtk_widget_get_root(areaOf(*opened.controller))), keys);
    opened.screen.focusWindow();
    opened.takeKeyboard();
    opened.unit->setParameterValue(GainPort, 1);
    for (int press = 1; press <= 2; ++press) {
        Opened::press("space");
        EXPECT_TRUE(waitUntil([&] { return spaces == press; }));
        EXPECT_TRUE(waitUntil([&] { return opened.hasKeyboard(); })); // again, for the next key
    }
    EXPECT_EQ(opened.unit->parameterValue(GainPort), 1.0F); // the interface did not hear of it
    // While text is being typed a space is part of it.
    EXPECT_TRUE(opened.hears("x"));
    EXPECT_TRUE(opened.hears("space"));
    EXPECT_EQ(spaces, 2);
    EXPECT_TRUE(opened.hears("alt+q")); // nor is Alt with a letter of no button lost
    EXPECT_TRUE(opened.hasKeyboard());
}

TEST_F(Interface, MayMakeItsWindowLateAndStillFillsThePanel) {
    const Opened opened("lateinterface");
    EXPECT_TRUE(waitUntil([&] { return opened.screen.colours()[Green] == 400 * 300; }));
}

TEST_F(Interface, LargerThanTheScreenScrolls) {
    const Opened opened("largeinterface");
    const auto& screen = opened.screen;
    // The window grows up to the size of the screen; the rest is reached by scrolling, from the top left.
    EXPECT_TRUE(waitUntil([&] { return screen.panel().bounds().height > 300; }));
    GtkWidget* scroller = widgetOf(*opened.controller->view());
    GtkAdjustment* down = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scroller));
    EXPECT_TRUE(waitUntil([&] { return gtk_adjustment_get_upper(down) == 1400; }));
    EXPECT_TRUE(waitUntil([&] {
        const auto socket = screen.socket();
        return socket && socket->isVisible && socket->childPlace == CGRect{0, 0, 1000, 1400};
    }));
    gtk_adjustment_set_value(down, 100);
    EXPECT_TRUE(waitUntil([&] { return screen.socket()->childPlace.y == -100; }));
}

TEST_F(Interface, HasItsEffectRunWhileItIsSeen) {
    constexpr std::uint32_t GainUsedPort = 5; // told by the effect as it runs
    const Opened opened("gain");
    EXPECT_TRUE(waitUntil([&] { return opened.unit->parameterValue(GainUsedPort) == 1.0F; }));
    opened.screen.panel().setHidden(true);
    EXPECT_TRUE(waitUntil([&] { return !opened.screen.socket()->isVisible; }));
    opened.unit->setParameterValue(GainPort, 2);
    RunLoop::current().runFor(0.3);
    EXPECT_EQ(opened.unit->parameterValue(GainUsedPort), 1.0F);
}

TEST_F(Interface, OnlyOneIsOpenAndTheNextIsPlain) {
    const auto unit = makeUnit("urn:tonewright:test:gain");
    auto first = requestScreen(*unit);
    auto second = requestScreen(*unit);
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(areaOf(*first));
    EXPECT_FALSE(areaOf(*second));
    first.reset();
    first = requestScreen(*unit);
    EXPECT_TRUE(areaOf(*first));
}

TEST_F(Interface, OutlivesTheHostsReferences) {
    std::shared_ptr<UIViewController> controller;
    {
        const auto unit = makeUnit("urn:tonewright:test:gain");
        controller = requestScreen(*unit);
    }
    EffectScreen screen(controller, 300, 200);
    EXPECT_TRUE(waitUntil([&] { return screen.colours()[Green] > 0; }));
}

TEST_F(Interface, ThatFailsGivesNoController) {
    for (const char* name : {"failinginterface", "missinginterface"}) {
        const auto unit = makeUnit(std::string("urn:tonewright:test:") + name);
        ::testing::internal::CaptureStderr();
        EXPECT_FALSE(requestScreen(*unit));
        EXPECT_NE(::testing::internal::GetCapturedStderr().find(name), std::string::npos);
        ::testing::internal::CaptureStderr();
        EXPECT_FALSE(requestScreen(*unit)); // and again
        (void)::testing::internal::GetCapturedStderr();
    }
}

TEST_F(Interface, ThatDemandsTheInstanceIsReplacedByThePlainOne) {
    const auto unit = makeUnit("urn:tonewright:test:demandinginterface");
    ::testing::internal::CaptureStderr();
    const auto controller = requestScreen(*unit);
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("instance-access"), std::string::npos);
    ASSERT_TRUE(controller);
    EXPECT_FALSE(areaOf(*controller));
    EXPECT_TRUE(find(widgetOf(*controller->view()), [](GtkWidget* widget) {
        return GTK_IS_LABEL(widget) &&
               std::string_view(gtk_label_get_text(GTK_LABEL(widget))).find("instance-access") !=
                   std::string_view::npos;
    }));
}

TEST_F(Interface, ThatNeverAnswersIsNamed) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process from the start, not a copy of this one
    // The child process hangs in the interface; the watchdog speaks, then the alarm ends it.
    EXPECT_EXIT(
        {
            ::alarm(10);
            const auto unit = makeUnit("urn:tonewright:test:hanginginterface");
            (void)requestScreen(*unit);
        },
        ::testing::KilledBySignal(SIGALRM), "hanginginterface#ui does not answer");
}

TEST_F(PlainInterface, ShowsAndSetsParametersAndPresets) {
    const Opened opened("stateful");
    const auto& unit = opened.unit;
    const auto& controller = opened.controller;
    GtkWidget* root = widgetOf(*controller->view());
    GtkWidget* slider = find(root, [](GtkWidget* widget) -> bool { return GTK_IS_SCALE(widget); });
    GtkWidget* menu = find(root, [](GtkWidget* widget) -> bool { return GTK_IS_DROP_DOWN(widget); });
    ASSERT_TRUE(slider != nullptr && menu != nullptr);
    EXPECT_NEAR(gtk_range_get_value(GTK_RANGE(slider)), 1, 1e-6);
    gtk_range_set_value(GTK_RANGE(slider), 2);
    EXPECT_EQ(unit->parameterValue(GainPort), 2.0F);
    unit->setParameterValue(GainPort, 4.0F);
    EXPECT_TRUE(waitUntil([&] { return gtk_range_get_value(GTK_RANGE(slider)) == 4.0; }));
    EXPECT_EQ(unit->parameterValue(GainPort), 4.0F); // following is not setting
    gtk_drop_down_set_selected(GTK_DROP_DOWN(menu), 1);
    EXPECT_EQ(unit->parameterValue(GainPort), 3.0F);
    EXPECT_EQ(unit->currentPreset(), AUAudioUnitPreset(0, "Text"));
    EXPECT_TRUE(find(root, [](GtkWidget* widget) {
        return GTK_IS_LABEL(widget) && std::string(gtk_label_get_text(GTK_LABEL(widget))) == "Test stateful";
    }));
}

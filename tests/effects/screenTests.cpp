// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the effect's screen: its own interface in the panel, the plain list, and interfaces that fail. Runs
// twice: with interfaces inside the program and in processes of their own.
#include "tests/effects/EffectScreen.hpp"
#include "tests/effects/effectProcesses.hpp"

#include <csignal>

using namespace platform;
using namespace platform::test;

namespace {

constexpr std::uint32_t GainPort = 4;
constexpr unsigned long Green = 0x20c040, Blue = 0x2040c0; // colours of the fixture

// Returns the first widget, `widget` or a descendant, for which the predicate is true; null if there is none.
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

bool isOutside() {
    const char* wish = std::getenv("TONEWRIGHT_EFFECT_PROCESS");
    return wish != nullptr && std::string_view(wish) == "own";
}

// The button below the list that replaces an interface that has ended; null while the interface is shown.
GtkWidget* buttonOf(UIViewController& controller) {
    return find(widgetOf(*controller.view()), [](GtkWidget* widget) -> bool {
        return GTK_IS_BUTTON(widget) &&
               std::string_view(gtk_button_get_label(GTK_BUTTON(widget)) == nullptr
                                    ? ""
                                    : gtk_button_get_label(GTK_BUTTON(widget))) == "_Open Again";
    });
}

bool says(UIViewController& controller, std::string_view words) {
    static std::string_view wanted;
    wanted = words;
    return find(widgetOf(*controller.view()), [](GtkWidget* widget) -> bool {
               return GTK_IS_LABEL(widget) &&
                      std::string_view(gtk_label_get_text(GTK_LABEL(widget))).find(wanted) !=
                          std::string_view::npos;
           }) != nullptr;
}

// A fixture's screen in a window of 400 x 300 pixels.
struct Opened {
    explicit Opened(const std::string& name)
        : unit(makeUnit("urn:tonewright:test:" + name)) {}
    void waitDrawn() const {
        EXPECT_TRUE(waitFor([&] { return screen.colours()[Green] > 0; }));
    }
    [[nodiscard]] bool hasKeyboard() const { return screen.focusedWindow() == screen.socket()->child; }
    void takeKeyboard() const {
        gtk_root_set_focus(gtk_widget_get_root(areaOf(*controller)), nullptr);
        gtk_widget_grab_focus(areaOf(*controller));
        EXPECT_TRUE(waitFor([&] { return hasKeyboard(); }));
    }
    static void press(const std::string& keys) { ASSERT_EQ(std::system(("xdotool key " + keys).c_str()), 0); }
    // The interface replies to any key press with a gain of 3.
    [[nodiscard]] bool hears(const std::string& keys) const {
        unit->setParameterValue(GainPort, 1);
        press(keys);
        return waitFor([&] { return unit->parameterValue(GainPort) == 3.0F; });
    }
    std::shared_ptr<AUAudioUnit> unit;
    std::shared_ptr<UIViewController> controller = requestScreen(*unit);
    EffectScreen screen{controller, 400, 300};
};

} // namespace

using Interface = ToolkitTest;

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
    EXPECT_TRUE(waitFor([&] { return fills(400, 300); }));
    EXPECT_TRUE(waitFor([&] { return screen.colours()[Green] == 400 * 300; }));
    for (const int width : {640, 301, 400}) {
        screen.resize(width, width - 100);
        EXPECT_TRUE(waitFor([&] { return fills(width, width - 100); })) << width;
    }
    screen.effect().setHidden(true);
    EXPECT_TRUE(waitFor([&] { return !screen.socket()->isVisible; }));
    screen.resize(500, 200);
    screen.effect().setHidden(false);
    EXPECT_TRUE(waitFor([&] { return fills(500, 200); }));
    screen.panel().setHidden(true);
    EXPECT_TRUE(waitFor([&] { return !screen.socket()->isVisible; }));
    screen.panel().setHidden(false);
    EXPECT_TRUE(waitFor([&] { return fills(500, 200); }));
    // Removes the view from the window and adds it again.
    auto view = controller->view();
    view->removeFromSuperview();
    EXPECT_TRUE(waitFor([&] { return !screen.socket(); }));
    screen.panel().addSubview(view);
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    view->setFrame({-100, 20, 300, 120}); // partly outside: clipped, not shrunk
    EXPECT_TRUE(waitFor([&] {
        const auto socket = screen.socket();
        return socket && socket->isVisible && socket->place.width == 200 && socket->place.height == 120 &&
               socket->childPlace.x == -100 && socket->childPlace.width == 300;
    }));
}

TEST_F(Interface, HearsOfValuesAndSetsThem) {
    const Opened opened("gain");
    opened.waitDrawn();
    opened.unit->setParameterValue(GainPort, 0.5F);
    EXPECT_TRUE(waitFor([&] { return opened.screen.colours()[Blue] > 0; }));
    opened.unit->setParameterValue(GainPort, 0.25F); // the interface replies with 0.75
    EXPECT_TRUE(waitFor([&] { return opened.unit->parameterValue(GainPort) == 0.75F; }));
    opened.unit->setParameterValue(GainPort, 0.125F); // the interface replies with more than the maximum
    EXPECT_TRUE(waitFor([&] { return opened.unit->parameterValue(GainPort) == 4.0F; }));
}

TEST_F(Interface, TakesTheKeyboardWithTheFocusAndEscapeGivesItBack) {
    const Opened opened("gain");
    opened.waitDrawn();
    opened.screen.focusWindow();
    EXPECT_FALSE(opened.hasKeyboard());
    for (int round = 0; round < 2; ++round) {
        opened.takeKeyboard();
        EXPECT_TRUE(opened.hears("x"));
        EXPECT_TRUE(opened.hears("space")); // belongs to the text that is being typed
        EXPECT_TRUE(opened.hears("alt+q")); // Alt with a letter that no button uses is forwarded, too
        EXPECT_TRUE(opened.hears("Escape"));
        EXPECT_TRUE(waitFor([&] { return !opened.hasKeyboard(); }));
    }
}

TEST_F(Interface, ShowsTheFocusFromTheFirstKeyThatBringsIt) {
    const Opened opened("gain");
    const auto& screen = opened.screen;
    EXPECT_TRUE(waitFor([&] { return screen.colours()[Green] == 400 * 300; }));
    screen.focusWindow();
    auto* window = GTK_WINDOW(gtk_widget_get_root(widgetOf(screen.panel())));
    gtk_window_set_focus(window, nullptr);
    gtk_window_set_focus_visible(window, FALSE); // as after a click
    ASSERT_EQ(std::system("xdotool key Tab"), 0);
    const auto leavesTheRing = [&] { return screen.socket()->place == CGRect{4, 4, 392, 292}; };
    EXPECT_TRUE(waitFor(leavesTheRing));
    EXPECT_EQ(screen.focusedWindow(), screen.socket()->child);
}

TEST_F(Interface, MayMakeItsWindowLateAndStillFillsThePanel) {
    const Opened opened("lateinterface");
    EXPECT_TRUE(waitFor([&] { return opened.screen.colours()[Green] == 400 * 300; }));
}

TEST_F(Interface, LargerThanTheScreenScrolls) {
    const Opened opened("largeinterface");
    const auto& screen = opened.screen;
    // The window grows up to the size of the screen; the remainder can be scrolled into view, from the top
    // left.
    EXPECT_TRUE(waitFor([&] { return screen.panel().bounds().height > 300; }));
    GtkWidget* scroller = find(widgetOf(*opened.controller->view()),
                               [](GtkWidget* widget) -> bool { return GTK_IS_SCROLLED_WINDOW(widget); });
    GtkAdjustment* down = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scroller));
    EXPECT_TRUE(waitFor([&] { return gtk_adjustment_get_upper(down) == 1400; }));
    EXPECT_TRUE(waitFor([&] {
        const auto socket = screen.socket();
        return socket && socket->isVisible && socket->childPlace == CGRect{0, 0, 1000, 1400};
    }));
    gtk_adjustment_set_value(down, 100);
    EXPECT_TRUE(waitFor([&] { return screen.socket()->childPlace.y == -100; }));
}

TEST_F(Interface, HasItsEffectRunWhileItIsSeen) {
    constexpr std::uint32_t GainUsedPort = 5; // an output, written as the effect runs
    const Opened opened("gain");
    EXPECT_TRUE(waitFor([&] { return opened.unit->parameterValue(GainUsedPort) == 1.0F; }));
    opened.screen.panel().setHidden(true);
    EXPECT_TRUE(waitFor([&] { return !opened.screen.socket()->isVisible; }));
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
    EXPECT_TRUE(waitFor([&] { return screen.colours()[Green] > 0; }));
}

TEST_F(Interface, ThatFailsGivesNoController) {
    for (const char* name : {"failinginterface", "missinginterface"}) {
        const auto unit = makeUnit(std::string("urn:tonewright:test:") + name);
        ::testing::internal::CaptureStderr();
        EXPECT_FALSE(requestScreen(*unit));
        EXPECT_NE(::testing::internal::GetCapturedStderr().find(name), std::string::npos);
        ::testing::internal::CaptureStderr();
        EXPECT_FALSE(requestScreen(*unit)); // also the second time
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
    EXPECT_TRUE(says(*controller, "instance-access"));
}

TEST_F(Interface, ExchangesMessagesWithItsEffect) {
    constexpr std::uint32_t SizePort = 7;
    const Opened opened("burst");
    opened.waitDrawn();
    opened.unit->setParameterValue(SizePort,
                                   100); // the interface sends five bytes, and the effect sends them back
    EXPECT_TRUE(waitFor([&] { return opened.unit->parameterValue(SizePort) == 5.0F; }));
}

TEST_F(Interface, OfAnySizeLeavesTheWindowUsable) {
    for (const char* name : {"hugeinterface", "emptyinterface"}) {
        const Opened opened(name);
        RunLoop::current().runFor(0.5);
        for (const int width : {500, 400}) {
            opened.screen.resize(width, 300);
            EXPECT_TRUE(waitFor([&] { return opened.screen.panel().bounds().width >= width; }));
        }
        EXPECT_TRUE(areaOf(*opened.controller));
    }
}

TEST_F(Interface, ThatClosesItsWindowIsReplacedByTheListAndCanBeOpenedAgain) {
    const Opened opened("gain");
    opened.waitDrawn();
    opened.unit->setParameterValue(GainPort, 0.375F);
    ASSERT_TRUE(waitFor([&] { return buttonOf(*opened.controller) != nullptr; }));
    EXPECT_TRUE(says(*opened.controller, "closed its window"));
    opened.unit->setParameterValue(GainPort, 1);
    gtk_widget_activate(buttonOf(*opened.controller));
    opened.waitDrawn();
    EXPECT_FALSE(buttonOf(*opened.controller));
}

TEST_F(Interface, MayBeKilledFiftyTimes) {
    if (!isOutside()) GTEST_SKIP();
    const Opened opened("gain");
    const auto sound = effectProcesses();
    for (int i = 0; i < 50; ++i) {
        opened.waitDrawn();
        const auto processes = effectProcesses(true);
        ASSERT_EQ(processes.size(), 1U);
        ::kill(processes.front(), SIGKILL);
        ASSERT_TRUE(waitFor([&] { return buttonOf(*opened.controller) != nullptr; })) << i;
        EXPECT_TRUE(says(*opened.controller, "has ended"));
        gtk_widget_activate(buttonOf(*opened.controller));
    }
    opened.waitDrawn();
    EXPECT_EQ(effectProcesses(), sound);
}

TEST_F(Interface, ThatHangsIsEndedAndReplacedByTheList) {
    if (!isOutside()) GTEST_SKIP();
    constexpr std::uint32_t GainUsedPort = 5;
    const Opened opened("gain");
    opened.waitDrawn();
    ::testing::internal::CaptureStderr();
    opened.unit->setParameterValue(GainPort, 0.625F);
    EXPECT_TRUE(
        waitFor([&] { return opened.unit->parameterValue(GainUsedPort) == 0.625F; })); // the sound goes on
    EXPECT_TRUE(waitFor([&] { return says(*opened.controller, "did not answer"); }));
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("gain#ui does not answer"), std::string::npos);
    EXPECT_TRUE(effectProcesses(true).empty());
    opened.unit->setParameterValue(GainPort, 1);
    gtk_widget_activate(buttonOf(*opened.controller));
    opened.waitDrawn();
    // Also while it is created.
    const auto unit = makeUnit("urn:tonewright:test:hanginginterface");
    const auto controller = requestScreen(*unit);
    ASSERT_TRUE(controller);
    EXPECT_TRUE(says(*controller, "did not answer"));
}

TEST_F(Interface, ThatNeverAnswersIsNamed) {
    if (isOutside()) GTEST_SKIP();
    // The child hangs in the interface. The watchdog reports this, and then the alarm ends the process.
    EXPECT_EXIT(
        {
            ::alarm(10);
            const auto unit = makeUnit("urn:tonewright:test:hanginginterface");
            (void)requestScreen(*unit);
        },
        ::testing::KilledBySignal(SIGALRM), "hanginginterface#ui does not answer");
}

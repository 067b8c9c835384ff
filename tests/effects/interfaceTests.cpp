// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests interfaces of other toolkits than X11, which always run in a process of their own.
#include "platform/effects/lv2/interfaceKinds.hpp"
#include "tests/effects/EffectScreen.hpp"
#include "tests/effects/effectProcesses.hpp"

#include <csignal>

using namespace platform;
using namespace platform::test;

namespace {

constexpr std::uint32_t GainPort = 4;
constexpr unsigned long Green = 0x20c040, Blue = 0x2040c0; // colours of the fixtures

void press(const std::string& keys) {
    ASSERT_EQ(std::system(("xdotool key " + keys).c_str()), 0);
}

void testEmbedding(const std::string& name) {
    const auto unit = makeUnit("urn:tonewright:test:" + name);
    auto controller = requestScreen(*unit);
    ASSERT_TRUE(controller);
    {
        const EffectScreen screen(controller, 400, 300);
        EXPECT_TRUE(waitFor([&] { return screen.colours()[Green] == 400 * 300; }));
        screen.resize(500, 200);
        EXPECT_TRUE(waitFor([&] { return screen.colours()[Green] == 500 * 200; }));
        screen.focusWindow();
        gtk_widget_child_focus(widgetOf(screen.panel()), GTK_DIR_TAB_FORWARD);
        EXPECT_TRUE(waitFor([&] { return screen.focusedWindow() == screen.socket()->child; }));
        press("x");
        EXPECT_TRUE(waitFor([&] { return unit->parameterValue(GainPort) == 3.0F; }));
        unit->setParameterValue(GainPort, 0.5F);
        EXPECT_TRUE(waitFor([&] { return screen.colours()[Blue] == 500 * 200; }));
        unit->setParameterValue(GainPort, 0.25F); // a dialog of the interface is no hang
        EXPECT_TRUE(waitFor([&] { return unit->parameterValue(GainPort) == 0.75F; }));
        EXPECT_EQ(effectProcesses(true).size(), 1U);
    }
    ::testing::internal::CaptureStderr();
    controller.reset();
    EXPECT_TRUE(waitFor([] { return effectProcesses(true).empty(); }));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

// The windows of an interface that are children of the root window.
class Windows : tonewright::test::Uncopied {
  public:
    Windows() = default;
    ~Windows() { XCloseDisplay(_display); }

    // Returns the window with this title if it is visible.
    [[nodiscard]] Window find(std::string_view title) const {
        Window root = None, parent = None, *children = nullptr, found = None;
        unsigned count = 0;
        XQueryTree(_display, DefaultRootWindow(_display), &root, &parent, &children, &count);
        for (unsigned i = 0; i < count; ++i) {
            XWindowAttributes attributes{};
            char* name = nullptr;
            if (XFetchName(_display, children[i], &name) == 0 || name == nullptr) continue;
            const bool isSo = title == name;
            XFree(name);
            if (isSo && XGetWindowAttributes(_display, children[i], &attributes) != 0 &&
                attributes.map_state == IsViewable) {
                found = children[i];
            }
        }
        if (children != nullptr) XFree(children);
        return found;
    }
    void close(Window window) const { // as a window manager does
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.format = 32;
        XSendEvent(_display, window, False, NoEventMask, &event);
        XFlush(_display);
    }

  private:
    Display* _display = XOpenDisplay(nullptr);
};

} // namespace

using Interface = ToolkitTest;

TEST_F(Interface, OfGtk2IsEmbedded) {
    if (!lv2::hasInterfaceProgram(lv2::Interface::Kind::Gtk2)) GTEST_SKIP();
    testEmbedding("gtk2interface");
}

TEST_F(Interface, OfQt5IsEmbedded) {
    if (!lv2::hasInterfaceProgram(lv2::Interface::Kind::Qt5)) GTEST_SKIP();
    testEmbedding("qt5interface");
}

TEST_F(Interface, WithAWindowOfItsOwnIsShownOnRequest) {
    constexpr const char* Title = "Test externalinterface";
    const Windows windows;
    const auto unit = makeUnit("urn:tonewright:test:externalinterface");
    const auto controller = requestScreen(*unit);
    ASSERT_TRUE(controller);
    const EffectScreen screen(controller, 400, 300);
    screen.focusWindow();
    EXPECT_FALSE(windows.find(Title));
    press("alt+w");
    EXPECT_TRUE(waitFor([&] { return windows.find(Title) != None; }));
    windows.close(windows.find(Title));
    EXPECT_TRUE(waitFor([] { return effectProcesses(true).empty(); }));
    EXPECT_FALSE(windows.find(Title));
    for (const char* title : {Title, "half"}) { // also after its process was killed
        screen.focusWindow();
        press("alt+w");
        EXPECT_TRUE(waitFor([&] { return windows.find(title) != None; }));
        unit->setParameterValue(GainPort, 0.5F);
        EXPECT_TRUE(waitFor([&] { return windows.find("half") != None; }));
        ASSERT_EQ(effectProcesses(true).size(), 1U);
        ::kill(effectProcesses(true).front(), SIGKILL);
        EXPECT_TRUE(waitFor([&] { return effectProcesses(true).empty(); }));
    }
}

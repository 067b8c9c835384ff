// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows an effect's screen in a real window and looks at its pixels. Main thread.
#pragma once

#include "platform/ui/UIView.private.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/detail/toolkit.hpp"
#include "tests/effects/Rendering.hpp"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>
#include <map>
#include <optional>

namespace platform::test {

class ScreenTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        static const bool isStarted = [] {
            startToolkit();
            return true;
        }();
        (void)isStarted;
    }
};

/// Ask for the unit's screen and wait for the answer.
inline std::shared_ptr<UIViewController> requestScreen(AUAudioUnit& unit) {
    std::shared_ptr<UIViewController> controller;
    int calls = 0;
    unit.requestViewController([&](std::shared_ptr<UIViewController> made) {
        controller = std::move(made);
        EXPECT_TRUE(isMainThread());
        ++calls;
    });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(waitUntil([&] { return calls > 0; }));
    return controller;
}

/// A window with a panel that fills it, and the effect's view in the panel.
class EffectScreen {
  public:
    EffectScreen(const std::shared_ptr<UIViewController>& effect, int width, int height)
        : _display(XOpenDisplay(nullptr)) {
        _controller->setView(_panel);
        _window->setRootViewController(_controller);
        _panel->addSubview(effect->view());
        _effect = effect->view();
        _effect->setTranslatesAutoresizingMaskIntoConstraints(false);
        NSLayoutConstraint::activateConstraints(
            {_effect->topAnchor().constraintEqualToAnchor(_panel->topAnchor()),
             _effect->leadingAnchor().constraintEqualToAnchor(_panel->leadingAnchor()),
             _effect->bottomAnchor().constraintEqualToAnchor(_panel->bottomAnchor()),
             _effect->trailingAnchor().constraintEqualToAnchor(_panel->trailingAnchor())});
        _window->makeKeyAndVisible();
        resize(width, height);
    }
    ~EffectScreen() {
        _window->close();
        XCloseDisplay(_display);
    }
    EffectScreen(const EffectScreen&) = delete;
    EffectScreen& operator=(const EffectScreen&) = delete;

    void resize(int width, int height) {
        gtk_window_set_default_size(GTK_WINDOW(widgetOf(*_window)), width, height);
        EXPECT_TRUE(
            waitUntil([&] { return _panel->bounds().width == width && _panel->bounds().height == height; }));
    }
    [[nodiscard]] UIView& panel() { return *_panel; }
    [[nodiscard]] UIView& effect() { return *_effect; }

    /// Give the window that has the keyboard.
    [[nodiscard]] Window focusedWindow() const {
        Window window = None;
        int revert = 0;
        XGetInputFocus(_display, &window, &revert);
        return window;
    }

    /// Give the keyboard to the window, as a window manager does.
    void focusWindow() const {
        XSetInputFocus(_display, topLevel(), RevertToParent, CurrentTime);
        XSync(_display, False);
        EXPECT_TRUE(waitUntil([&] { return gtk_window_is_active(GTK_WINDOW(widgetOf(*_window))) != FALSE; }));
    }

    struct Socket {
        Window window = None, child = None;
        int x = 0, y = 0, width = 0, height = 0;                     // in the top level
        int childX = 0, childY = 0, childWidth = 0, childHeight = 0; // in the socket
        bool isVisible = false;
    };
    /// Find the effect's X window; absent when the top level has none.
    [[nodiscard]] std::optional<Socket> socket() const {
        Socket found;
        found.window = firstChild(topLevel());
        if (found.window == None) return std::nullopt;
        XWindowAttributes attributes{};
        XGetWindowAttributes(_display, found.window, &attributes);
        found.x = attributes.x;
        found.y = attributes.y;
        found.width = attributes.width;
        found.height = attributes.height;
        found.isVisible = attributes.map_state == IsViewable;
        found.child = firstChild(found.window);
        if (found.child != None && XGetWindowAttributes(_display, found.child, &attributes) != 0) {
            found.childX = attributes.x;
            found.childY = attributes.y;
            found.childWidth = attributes.width;
            found.childHeight = attributes.height;
        }
        return found;
    }

    /// Count the pixels of each colour that the effect's window shows.
    [[nodiscard]] std::map<unsigned long, int> colours() const {
        std::map<unsigned long, int> counts;
        const auto place = socket();
        if (!place || !place->isVisible) return counts;
        XImage* image = XGetImage(_display, place->window, 0, 0, static_cast<unsigned>(place->width),
                                  static_cast<unsigned>(place->height), AllPlanes, ZPixmap);
        if (image == nullptr) return counts;
        for (int y = 0; y < image->height; ++y)
            for (int x = 0; x < image->width; ++x) ++counts[XGetPixel(image, x, y) & 0xffffff];
        XDestroyImage(image);
        return counts;
    }

  private:
    [[nodiscard]] Window topLevel() const {
        return gdk_x11_surface_get_xid(gtk_native_get_surface(gtk_widget_get_native(widgetOf(*_panel))));
    }
    [[nodiscard]] Window firstChild(Window window) const {
        Window root = None, parent = None, *children = nullptr;
        unsigned count = 0;
        if (XQueryTree(_display, window, &root, &parent, &children, &count) == 0) return None;
        Window first = None;
        for (unsigned i = 0; i < count && first == None; ++i) { // the toolkit has a window for input alone
            XWindowAttributes attributes{};
            if (XGetWindowAttributes(_display, children[i], &attributes) != 0 &&
                attributes.c_class == InputOutput)
                first = children[i];
        }
        if (children != nullptr) XFree(children);
        return first;
    }

    Display* _display;
    std::shared_ptr<UIWindow> _window = std::make_shared<UIWindow>();
    std::shared_ptr<UIViewController> _controller = std::make_shared<UIViewController>();
    std::shared_ptr<UIView> _panel = std::make_shared<UIView>();
    std::shared_ptr<UIView> _effect;
};

} // namespace platform::test

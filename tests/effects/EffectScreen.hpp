// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows an effect's screen in a real window and reads its pixels. Main thread only.
#pragma once

#include "shared/Common/Extensions/pinToSuperviewEdges.hpp"
#include "tests/effects/Rendering.hpp"
#include "tests/ui/toolkitFixture.hpp"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <gdk/x11/gdkx.h>

namespace platform::test {

using platform::testing::ToolkitTest;

/// Requests the unit's screen and waits for it.
inline std::shared_ptr<UIViewController> requestScreen(AUAudioUnit& unit) {
    std::shared_ptr<UIViewController> controller;
    int calls = 0;
    unit.requestViewController([&](std::shared_ptr<UIViewController> made) {
        controller = std::move(made);
        EXPECT_TRUE(isMainThread());
        ++calls;
    });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(waitFor([&] { return calls > 0; }));
    return controller;
}

/// A window with a panel that fills it, and the effect's view in the panel.
class EffectScreen : tonewright::test::Uncopied {
  public:
    EffectScreen(const std::shared_ptr<UIViewController>& effect, int width, int height)
        : _shown(width, height)
        , _effect(effect->view())
        , _display(XOpenDisplay(nullptr)) {
        panel().addSubview(_effect);
        tonewright::pinToSuperviewEdges(*_effect);
    }
    ~EffectScreen() { XCloseDisplay(_display); }

    void resize(int width, int height) const { _shown.resize(width, height); }
    [[nodiscard]] UIView& panel() const { return *_shown.view; }
    [[nodiscard]] UIView& effect() const { return *_effect; }

    /// Returns the window that has the keyboard focus.
    [[nodiscard]] Window focusedWindow() const {
        Window window = None;
        int revert = 0;
        XGetInputFocus(_display, &window, &revert);
        return window;
    }

    /// Returns the keyboard focus to the window, as a window manager does.
    void focusWindow() const {
        XSetInputFocus(_display, topLevel(), RevertToParent, CurrentTime);
        XSync(_display, False);
        EXPECT_TRUE(
            waitFor([&] { return gtk_window_is_active(GTK_WINDOW(widgetOf(*_shown.window))) != FALSE; }));
    }

    struct Socket {
        Window window = None, child = None;
        CGRect place;      // relative to the top-level window
        CGRect childPlace; // relative to the socket
        bool isVisible = false;
    };
    /// Finds the effect's X window; returns no value if the top-level window contains none.
    [[nodiscard]] std::optional<Socket> socket() const {
        Socket found;
        found.window = firstChild(topLevel());
        if (found.window == None) return std::nullopt;
        XWindowAttributes attributes{};
        const auto placeOf = [&](Window window) {
            XGetWindowAttributes(_display, window, &attributes);
            return CGRect{static_cast<double>(attributes.x), static_cast<double>(attributes.y),
                          static_cast<double>(attributes.width), static_cast<double>(attributes.height)};
        };
        found.place = placeOf(found.window);
        found.isVisible = attributes.map_state == IsViewable;
        found.child = firstChild(found.window);
        if (found.child != None) found.childPlace = placeOf(found.child);
        return found;
    }

    /// Returns how many pixels of each colour the effect's window shows.
    [[nodiscard]] std::map<unsigned long, int> colours() const {
        std::map<unsigned long, int> counts;
        const auto place = socket();
        if (!place || !place->isVisible) return counts;
        XImage* image = XGetImage(_display, place->window, 0, 0, static_cast<unsigned>(place->place.width),
                                  static_cast<unsigned>(place->place.height), AllPlanes, ZPixmap);
        if (image == nullptr) return counts;
        for (int y = 0; y < image->height; ++y) {
            for (int x = 0; x < image->width; ++x) ++counts[XGetPixel(image, x, y) & 0xffffff];
        }
        XDestroyImage(image);
        return counts;
    }

  private:
    [[nodiscard]] Window topLevel() const {
        return gdk_x11_surface_get_xid(gtk_native_get_surface(gtk_widget_get_native(widgetOf(panel()))));
    }
    [[nodiscard]] Window firstChild(Window window) const {
        Window root = None, parent = None, *children = nullptr;
        unsigned count = 0;
        if (XQueryTree(_display, window, &root, &parent, &children, &count) == 0) return None;
        Window first = None;
        for (unsigned i = 0; i < count && first == None; ++i) { // skips GTK's own input-only window
            XWindowAttributes attributes{};
            if (XGetWindowAttributes(_display, children[i], &attributes) != 0 &&
                attributes.c_class == InputOutput) {
                first = children[i];
            }
        }
        if (children != nullptr) XFree(children);
        return first;
    }

    platform::testing::ShownWindow _shown;
    std::shared_ptr<UIView> _effect;
    Display* _display;
};

} // namespace platform::test

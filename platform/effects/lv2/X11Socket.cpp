// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/X11Socket.private.hpp"

#include "platform/foundation/console.hpp"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <algorithm>
#include <atomic>
#include <string>

namespace platform::lv2 {
namespace {

XErrorHandler toolkitsHandler = nullptr; // main thread, written once
std::atomic<Display*> toolkitsDisplay{nullptr};
std::atomic<int> errorsSaid{0};

// An interface may use connections of its own, and any may fail, for example on a window that has just gone.
// The system's own answer is to end the process; an interface's error is not worth that.
int onError(Display* display, XErrorEvent* error) {
    if (display == toolkitsDisplay && toolkitsHandler != nullptr) return toolkitsHandler(display, error);
    constexpr int MostSaid = 5;
    if (errorsSaid.fetch_add(1) < MostSaid)
        warn("An effect's interface made an error of the X protocol (error " +
             std::to_string(error->error_code) + ", request " + std::to_string(error->request_code) +
             "); it goes on.");
    return 0;
}

} // namespace

void tolerateInterfaceErrors(void* display) {
    if (toolkitsDisplay != nullptr) return;
    toolkitsHandler = XSetErrorHandler(onError);
    toolkitsDisplay = static_cast<Display*>(display);
}

struct X11Socket::Implementation {
    Display* display = nullptr;
    Window window = None, child = None;
    Window parent = None; // None: under the root
    int naturalWidth = 0, naturalHeight = 0;
    bool keepsSize = false;
    bool isMapped = false;
    PixelRect area, visible; // as placed last
    PixelRect childPlace;    // as placed last

    // What the hints allow instead of the wished size.
    [[nodiscard]] std::pair<int, int> allowedSize(int width, int height) const {
        if (keepsSize) return {naturalWidth, naturalHeight};
        XSizeHints hints{};
        long given = 0;
        if (XGetWMNormalHints(display, child, &hints, &given) == 0) return {width, height};
        if ((hints.flags & PMaxSize) != 0 && hints.max_width > 0 && hints.max_height > 0) {
            width = std::min(width, hints.max_width);
            height = std::min(height, hints.max_height);
        }
        if ((hints.flags & PMinSize) != 0) {
            width = std::max(width, hints.min_width);
            height = std::max(height, hints.min_height);
        }
        return {std::max(width, 1), std::max(height, 1)};
    }

    void placeChild() {
        if (child == None || area.width <= 0 || area.height <= 0) return;
        const auto [width, height] = allowedSize(area.width, area.height);
        // Centred in the area; the socket shows only the visible part of that.
        const PixelRect place{area.x - visible.x + (area.width - width) / 2,
                              area.y - visible.y + (area.height - height) / 2, width, height};
        if (place == childPlace) return;
        childPlace = place;
        if (keepsSize)
            XMoveWindow(display, child, place.x, place.y);
        else
            XMoveResizeWindow(display, child, place.x, place.y, static_cast<unsigned>(place.width),
                              static_cast<unsigned>(place.height));
    }
};

X11Socket::X11Socket(std::unique_ptr<Implementation> implementation)
    : _implementation(std::move(implementation)) {}

std::unique_ptr<X11Socket> X11Socket::make(const char* displayName) {
    auto made = std::make_unique<Implementation>();
    Display* display = made->display = XOpenDisplay(displayName);
    if (display == nullptr) return nullptr;
    const int screen = DefaultScreen(display);
    XSetWindowAttributes attributes{};
    attributes.colormap = DefaultColormap(display, screen);
    attributes.border_pixel = 0;
    attributes.background_pixel = BlackPixel(display, screen);
    attributes.event_mask = SubstructureNotifyMask;
    made->window = XCreateWindow(display, RootWindow(display, screen), 0, 0, 1, 1, 0,
                                 DefaultDepth(display, screen), InputOutput, DefaultVisual(display, screen),
                                 CWColormap | CWBorderPixel | CWBackPixel | CWEventMask, &attributes);
    XSync(display, False); // the interface uses another connection: the window must exist before it is named
    return std::unique_ptr<X11Socket>(new X11Socket(std::move(made)));
}

X11Socket::~X11Socket() {
    XDestroyWindow(_implementation->display, _implementation->window);
    XCloseDisplay(_implementation->display);
}

X11Socket::WindowId X11Socket::window() const noexcept {
    return _implementation->window;
}

bool X11Socket::adoptChild(WindowId named) {
    auto& self = *_implementation;
    Window root = None, parent = None, *children = nullptr;
    unsigned count = 0;
    if (XQueryTree(self.display, self.window, &root, &parent, &children, &count) == 0) return false;
    self.child = count > 0 ? children[0] : None;
    for (unsigned i = 0; i < count; ++i)
        if (children[i] == named) self.child = named;
    if (children != nullptr) XFree(children);
    if (self.child == None) return false;
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(self.display, self.child, &attributes) == 0) return false;
    // The size it was made with, unless it has asked for another.
    if (self.naturalWidth <= 0) setNaturalSize(attributes.width, attributes.height);
    XSizeHints hints{};
    long given = 0;
    if (XGetWMNormalHints(self.display, self.child, &hints, &given) != 0 && (hints.flags & PMinSize) != 0 &&
        (hints.flags & PMaxSize) != 0 && hints.min_width == hints.max_width &&
        hints.min_height == hints.max_height)
        self.keepsSize = true;
    if (attributes.map_state == IsUnmapped) XMapWindow(self.display, self.child);
    XResizeWindow(self.display, self.window, static_cast<unsigned>(std::max(self.naturalWidth, 1)),
                  static_cast<unsigned>(std::max(self.naturalHeight, 1)));
    XSync(self.display, False);
    return true;
}

void X11Socket::setNaturalSize(int width, int height) noexcept {
    _implementation->naturalWidth = width;
    _implementation->naturalHeight = height;
}

void X11Socket::keepNaturalSize() noexcept {
    _implementation->keepsSize = true;
}

void X11Socket::moveTo(std::optional<WindowId> parent) {
    auto& self = *_implementation;
    const Window wanted = parent.value_or(None);
    if (self.parent == wanted) return;
    hide();
    self.parent = wanted;
    XReparentWindow(self.display, self.window, parent ? wanted : DefaultRootWindow(self.display), 0, 0);
    XSync(self.display, False);
}

void X11Socket::place(const PixelRect& area, const PixelRect& visible) {
    auto& self = *_implementation;
    if (self.parent == None || visible.width <= 0 || visible.height <= 0) {
        hide();
        return;
    }
    if (visible != self.visible)
        XMoveResizeWindow(self.display, self.window, visible.x, visible.y,
                          static_cast<unsigned>(visible.width), static_cast<unsigned>(visible.height));
    const bool hasMoved = visible != self.visible || area != self.area;
    self.area = area;
    self.visible = visible;
    if (hasMoved) self.placeChild();
    if (!self.isMapped) XMapRaised(self.display, self.window);
    self.isMapped = true;
    XFlush(self.display);
}

void X11Socket::hide() {
    auto& self = *_implementation;
    if (!self.isMapped) return;
    XUnmapWindow(self.display, self.window);
    XFlush(self.display);
    self.isMapped = false;
}

bool X11Socket::giveKeyboard() {
    auto& self = *_implementation;
    XWindowAttributes attributes{};
    if (!self.isMapped || self.child == None ||
        XGetWindowAttributes(self.display, self.child, &attributes) == 0 ||
        (attributes.all_event_masks & KeyPressMask) == 0 || attributes.map_state != IsViewable)
        return false;
    // Escape reaches this program first and the interface after it: no interface can keep a person inside.
    XGrabKey(self.display, XKeysymToKeycode(self.display, XK_Escape), AnyModifier, self.window, False,
             GrabModeAsync, GrabModeSync);
    XSetInputFocus(self.display, self.child, RevertToParent, CurrentTime);
    XSync(self.display, False);
    return true;
}

bool X11Socket::followChild() {
    auto& self = *_implementation;
    bool hasChanged = false, isLeaving = false;
    while (XPending(self.display) > 0) {
        XEvent event;
        XNextEvent(self.display, &event);
        if (event.type == KeyPress || event.type == KeyRelease) {
            XAllowEvents(self.display, ReplayKeyboard, event.xkey.time);
            isLeaving = isLeaving || event.type == KeyPress;
        }
        if (event.type == DestroyNotify && event.xdestroywindow.window == self.child) self.child = None;
        if (event.type != ConfigureNotify || event.xconfigure.window != self.child) continue;
        const auto& now = event.xconfigure;
        if (now.width == self.childPlace.width && now.height == self.childPlace.height) continue;
        // It chose a size of its own: that is what it wants to have. What it refuses is not asked for again.
        self.naturalWidth = now.width;
        self.naturalHeight = now.height;
        hasChanged = self.keepsSize;
    }
    if (hasChanged) {
        self.childPlace = {};
        self.placeChild();
    }
    if (isLeaving) XUngrabKey(self.display, AnyKey, AnyModifier, self.window);
    XFlush(self.display);
    return isLeaving;
}

} // namespace platform::lv2

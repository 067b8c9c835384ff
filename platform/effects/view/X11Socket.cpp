// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/X11Socket.hpp"

#include "platform/effects/view/SizeRules.hpp"
#include "platform/foundation/console.hpp"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <atomic>
#include <chrono>
#include <string>

namespace platform::lv2 {
namespace {

XErrorHandler toolkitsHandler = nullptr; // main thread, written once
std::atomic<Display*> toolkitsDisplay{nullptr};
std::atomic<int> errorsSaid{0};

// Interfaces may have their own connections to the X server, and any request may fail, for example on a
// window that has just been destroyed. Xlib's default handler would end the process.
int onError(Display* display, XErrorEvent* error) {
    if (display == toolkitsDisplay && toolkitsHandler != nullptr) return toolkitsHandler(display, error);
    constexpr int MostSaid = 5;
    if (errorsSaid.fetch_add(1) < MostSaid) {
        warn("An effect's interface caused an X protocol error (error " + std::to_string(error->error_code) +
             ", request " + std::to_string(error->request_code) + "); the error is ignored.");
    }
    return 0;
}

} // namespace

void tolerateInterfaceErrors(void* display) {
    if (toolkitsDisplay != nullptr) return;
    toolkitsHandler = XSetErrorHandler(onError);
    toolkitsDisplay = static_cast<Display*>(display);
}

struct X11Socket::Implementation {
    using Clock = std::chrono::steady_clock;

    Display* display = nullptr;
    Window window = None, child = None;
    Window parent = None; // None if the socket is a child of the root window
    std::optional<InterfaceKeys> keys;

    SizeRules rules;
    std::optional<PixelSize>
        chosen; // set if the interface chose a size other than the given one in this area
    bool isShown = false, isMapped = false;
    PixelRect area, visible; // as last passed to X11Socket::place
    PixelRect place;         // the socket's rectangle in the parent
    PixelRect childPlace;    // the rectangle last requested for the child, in the socket
    Clock::time_point givenAt;
    int asked = 0; // how often that request has been repeated

    void readHints() {
        XSizeHints hints{};
        long given = 0;
        rules.setHints(XGetWMNormalHints(display, child, &hints, &given) != 0 ? hints : XSizeHints{});
    }

    // Places the socket and the child. The socket covers only the visible part of the interface; the window
    // draws the background around it.
    void arrange() {
        if (!isShown || child == None || parent == None) {
            unmap();
            return;
        }
        const PixelSize size = chosen ? *chosen : rules.sizeIn({area.width, area.height});
        const PixelRect wanted{area.x + (area.width - size.width) / 2,
                               area.y + (area.height - size.height) / 2, size.width, size.height};
        const PixelRect shown = intersection(wanted, visible);
        if (shown.width <= 0 || shown.height <= 0) {
            unmap();
            return;
        }
        if (shown != place) {
            XMoveResizeWindow(display, window, shown.x, shown.y, static_cast<unsigned>(shown.width),
                              static_cast<unsigned>(shown.height));
        }
        place = shown;
        const PixelRect inSocket{wanted.x - shown.x, wanted.y - shown.y, wanted.width, wanted.height};
        if (inSocket != childPlace) {
            childPlace = inSocket;
            givenAt = Clock::now();
            asked = 0;
            giveChildItsPlace();
        }
        if (!isMapped) {
            givenAt = Clock::now();
            XMapRaised(display, window);
        }
        isMapped = true;
        XFlush(display);
    }

    void giveChildItsPlace() {
        XMoveResizeWindow(display, child, childPlace.x, childPlace.y, static_cast<unsigned>(childPlace.width),
                          static_cast<unsigned>(childPlace.height));
        XFlush(display);
    }

    void unmap() {
        if (!isMapped) return;
        XUnmapWindow(display, window);
        XFlush(display);
        isMapped = false;
    }

    // Handles a change of the child's position or size that was not requested. Soon after a request, the
    // change may come from an earlier request of the interface itself, so the host's request is repeated a
    // few times.
    void settle() {
        XWindowAttributes now{};
        if (XGetWindowAttributes(display, child, &now) == 0) return;
        const PixelSize size{now.width, now.height};
        if (childPlace.width <= 0) {
            rules.wanted = size;
            return;
        }
        const bool hasSize = size == PixelSize{childPlace.width, childPlace.height};
        if (hasSize && now.x == childPlace.x && now.y == childPlace.y) return;
        const bool isSoon = Clock::now() - givenAt < std::chrono::seconds(1);
        constexpr int MostAsked = 3;
        if ((hasSize || (isSoon && !rules.keepsWanted())) && asked < MostAsked) {
            ++asked;
            giveChildItsPlace();
        } else if (!hasSize) {
            if (isSoon && !rules.keepsWanted()) {
                rules.refused({childPlace.width, childPlace.height}, size);
            } else {
                rules.wanted = size;
            }
            chosen = size;
            arrange();
        }
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
    made->keys.emplace(display, made->window);
    XSync(display,
          False); // the window must exist before the interface uses it on another connection
    return std::unique_ptr<X11Socket>(new X11Socket(std::move(made)));
}

X11Socket::~X11Socket() {
    XDestroyWindow(_implementation->display, _implementation->window);
    XCloseDisplay(_implementation->display);
}

X11Socket::WindowId X11Socket::window() const noexcept {
    return _implementation->window;
}

int X11Socket::connection() const noexcept {
    return ConnectionNumber(_implementation->display);
}

InterfaceKeys& X11Socket::keys() noexcept {
    return *_implementation->keys;
}

bool X11Socket::adoptChild(WindowId named) {
    auto& self = *_implementation;
    Window root = None, parent = None, *children = nullptr;
    unsigned count = 0;
    if (XQueryTree(self.display, self.window, &root, &parent, &children, &count) == 0) return false;
    self.child = count > 0 ? children[0] : None;
    for (unsigned i = 0; i < count; ++i) {
        if (children[i] == named) self.child = named;
    }
    if (children != nullptr) XFree(children);
    XWindowAttributes attributes{};
    if (self.child != None && XGetWindowAttributes(self.display, self.child, &attributes) == 0) {
        self.child = None;
    }
    self.keys->setChild(self.child);
    if (self.child == None) return false;
    // Uses the size with which the child was created, unless the interface has requested a size.
    if (self.rules.wanted.width <= 0) self.rules.wanted = {attributes.width, attributes.height};
    self.readHints();
    if (attributes.map_state == IsUnmapped) XMapWindow(self.display, self.child);
    XResizeWindow(self.display, self.window, static_cast<unsigned>(self.rules.wanted.width),
                  static_cast<unsigned>(self.rules.wanted.height));
    XSync(self.display, False);
    self.place = self.childPlace = {};
    self.arrange();
    return true;
}

bool X11Socket::hasChild() const noexcept {
    return _implementation->child != None;
}

void X11Socket::setWantedSize(const PixelSize& size) {
    auto& self = *_implementation;
    if (size == PixelSize{self.childPlace.width, self.childPlace.height}) {
        return; // the interface already has that size
    }
    self.rules.wanted = size;
    self.chosen = size;
    self.arrange();
}

void X11Socket::keepWantedSize() {
    _implementation->rules.isFixed = true;
}

PixelSize X11Socket::wantedSize() const noexcept {
    return _implementation->child == None ? PixelSize{} : _implementation->rules.wanted;
}

PixelSize X11Socket::smallestSize() const noexcept {
    return _implementation->child == None ? PixelSize{} : _implementation->rules.smallest();
}

void X11Socket::moveTo(std::optional<WindowId> parent) {
    auto& self = *_implementation;
    const Window wanted = parent.value_or(None);
    if (self.parent == wanted) return;
    self.unmap();
    self.isShown = false;
    self.parent = wanted;
    self.keys->setTopLevel(wanted);
    XReparentWindow(self.display, self.window, parent ? wanted : DefaultRootWindow(self.display), 0, 0);
    self.place = {};
    XSync(self.display, False);
}

void X11Socket::place(const PixelRect& area, const PixelRect& visible) {
    auto& self = *_implementation;
    if (self.isShown && area == self.area && visible == self.visible) return;
    self.isShown = true;
    if (area.width != self.area.width || area.height != self.area.height) self.chosen.reset();
    self.area = area;
    self.visible = visible;
    self.arrange();
}

void X11Socket::hide() {
    _implementation->isShown = false;
    _implementation->unmap();
}

bool X11Socket::followChild() {
    auto& self = *_implementation;
    bool hasMoved = false, isLeaving = false;
    while (XPending(self.display) > 0) {
        XEvent event;
        XNextEvent(self.display, &event);
        switch (event.type) {
        case KeyPress:
        case KeyRelease:
            isLeaving = self.keys->handle(event.xkey) || isLeaving;
            break;
        case FocusOut: // ignores focus changes caused by key grabs
            if (event.xfocus.mode == NotifyNormal) self.keys->keyboardLeft();
            break;
        case DestroyNotify:
            if (event.xdestroywindow.window != self.child) break;
            self.child = None;
            self.keys->setChild(None);
            self.unmap();
            break;
        case ConfigureNotify:
            hasMoved = hasMoved || event.xconfigure.window == self.child;
            break;
        case PropertyNotify:
            if (event.xproperty.window != self.child || event.xproperty.atom != XA_WM_NORMAL_HINTS) break;
            self.readHints();
            self.arrange();
            break;
        default:
            break;
        }
    }
    // Reads the current state, because the event may be out of date.
    if (hasMoved && self.child != None) self.settle();
    return isLeaving;
}

} // namespace platform::lv2

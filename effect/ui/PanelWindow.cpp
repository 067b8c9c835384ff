// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PanelWindow.hpp"

#include "XErrorScope.hpp"

#include <X11/Xutil.h>
#include <cairo-xlib.h>

#include <chrono>
#include <utility>

namespace tonewright::effect {
namespace {

constexpr double FrameSeconds =
    0.028; // shortest interval between animation steps, however often the host calls `idle`
constexpr double ViewableCheckSeconds = 0.25; // see checkViewable
// Called when the connection to the X server is lost. Prevents Xlib from ending the process.
void connectionLost(Display*, void* alive) {
    *static_cast<bool*>(alive) = false;
}

} // namespace

double steadySeconds() noexcept {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

PanelWindow::PanelWindow(std::unique_ptr<Display, CloseDisplay> display, PanelActions actions)
    : _display{std::move(display)}
    , _panel{[this, &actions] {
        actions.releaseKeyboard = [this] { giveKeyboardBack(); };
        return std::move(actions);
    }()} {}

std::unique_ptr<PanelWindow> PanelWindow::open(PanelWindowConfig config) {
    std::unique_ptr<Display, CloseDisplay> display{XOpenDisplay(nullptr)};
    if (!display) {
        return nullptr;
    }
    std::unique_ptr<PanelWindow> window{new PanelWindow(std::move(display), std::move(config.actions))};
    return window->create(config.parent, config.scaleFactor) ? std::move(window) : nullptr;
}

bool PanelWindow::create(Window parent, double scaleFactor) {
    Display* const display = _display.get();
    const XErrorScope errors{display};
    const int screen = DefaultScreen(display);
    _root = RootWindow(display, screen);
    _parent = parent != 0 ? parent : _root;
    _width = static_cast<int>(NaturalWidth * scaleFactor);
    _height = static_cast<int>(NaturalHeight * scaleFactor);

    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, _parent, &attributes) == 0) {
        return false;
    }
    // Uses the screen's default depth, visual and colormap, which may differ from the parent's. All three
    // must be set, and the border pixel too.
    XSetWindowAttributes wanted{};
    wanted.background_pixmap = None; // avoids a flash before the first drawing
    wanted.border_pixel = 0;
    wanted.colormap = DefaultColormap(display, screen);
    wanted.bit_gravity = NorthWestGravity;
    wanted.event_mask = ExposureMask | StructureNotifyMask | VisibilityChangeMask | ButtonPressMask |
                        ButtonReleaseMask | PointerMotionMask | LeaveWindowMask | KeyPressMask |
                        FocusChangeMask;
    _window =
        XCreateWindow(display, _parent, 0, 0, static_cast<unsigned>(_width), static_cast<unsigned>(_height),
                      0, DefaultDepth(display, screen), InputOutput, DefaultVisual(display, screen),
                      CWBackPixmap | CWBorderPixel | CWColormap | CWBitGravity | CWEventMask, &wanted);
    XSizeHints hints{};
    hints.flags = PMinSize | PBaseSize;
    hints.min_width = static_cast<int>(MinimumWidth * scaleFactor);
    hints.min_height = static_cast<int>(MinimumHeight * scaleFactor);
    hints.base_width = _width;
    hints.base_height = _height;
    XSetWMNormalHints(display, _window, &hints);
    XStoreName(display, _window, "Tonewright");
    _copyContext = XCreateGC(display, _window, 0, nullptr);
    XSetGraphicsExposures(display, _copyContext, False);
    if (_parent != _root) {
        XSelectInput(display, _parent, StructureNotifyMask);
    }
    XMapWindow(display, _window);
    XSync(display, False);
    if (XGetWindowAttributes(display, _window, &attributes) == 0) {
        return false;
    }
    _alive = true;
    XSetIOErrorExitHandler(display, connectionLost, &_alive);
    _windowSurface.reset(cairo_xlib_surface_create(display, _window, attributes.visual, _width, _height));
    sizeChanged(attributes.width, attributes.height);
    return true;
}

PanelWindow::~PanelWindow() {
    const XErrorScope errors{_display.get()};
    _panel.displayCloses();
    _buffer.reset();
    _windowSurface.reset();
    if (_copyContext != nullptr) {
        XFreeGC(_display.get(), _copyContext);
    }
    if (_window != 0) {
        XDestroyWindow(_display.get(), _window);
    }
    XSync(_display.get(), False);
    _display.reset(); // closed while `errors` exists, because closing may report errors
}

void PanelWindow::resize(int width, int height) {
    const XErrorScope errors{_display.get()};
    if (_alive && width > 0 && height > 0 && (width != _width || height != _height)) {
        XResizeWindow(_display.get(), _window, static_cast<unsigned>(width), static_cast<unsigned>(height));
        XFlush(_display.get());
    }
}

bool PanelWindow::idle() {
    if (!_alive) {
        return false;
    }
    const XErrorScope errors{_display.get()};
    while (_alive && XPending(_display.get()) > 0) {
        XEvent event{};
        XNextEvent(_display.get(), &event);
        handle(event);
    }
    if (!_alive) {
        return false;
    }
    deliverMove();
    checkViewable();
    if (!isVisible()) {
        return true;
    }
    const double now = steadySeconds();
    if (_lastAdvance < 0. || now - _lastAdvance >= FrameSeconds) {
        _panel.advance(_lastAdvance < 0. ? 0. : std::min(now - _lastAdvance, 0.2));
        _lastAdvance = now;
    }
    paint();
    return _alive;
}

void PanelWindow::followParent(Window parent) {
    if (_parent != _root) {
        XSelectInput(_display.get(), _parent, NoEventMask);
    }
    _parent = parent;
    if (_parent != _root) {
        XSelectInput(_display.get(), _parent, StructureNotifyMask);
    }
}

void PanelWindow::sizeChanged(int width, int height) {
    if (width == _width && height == _height && _buffer) {
        return;
    }
    _width = width;
    _height = height;
    cairo_xlib_surface_set_size(_windowSurface.get(), width, height);
    _buffer.reset(cairo_surface_create_similar(_windowSurface.get(), CAIRO_CONTENT_COLOR, width, height));
    _panel.resize(width, height);
}

// X does not notify a window when one of its ancestors is unmapped. While the window seems to be visible, its
// state is therefore queried four times a second. No query is needed while it is hidden, because an Expose or
// VisibilityNotify event arrives when it is shown again.
void PanelWindow::checkViewable() {
    const double now = steadySeconds();
    if (!isVisible() || now - _lastViewableCheck < ViewableCheckSeconds) {
        return;
    }
    _lastViewableCheck = now;
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(_display.get(), _window, &attributes) == 0) {
        return; // the window no longer exists; its DestroyNotify will follow
    }
    _viewable = attributes.map_state == IsViewable;
}

void PanelWindow::paint() {
    const auto damage = _panel.takeDamage();
    if (damage.empty()) {
        return;
    }
    cairo_t* const context = cairo_create(_buffer.get());
    for (const Rect& part : damage) {
        _panel.draw(context, part.snapped());
    }
    cairo_destroy(context);
    cairo_surface_flush(_buffer.get());
    for (const Rect& part : damage) {
        copyToWindow(part.snapped());
    }
    XFlush(_display.get());
}

void PanelWindow::copyToWindow(const Rect& rect) {
    XCopyArea(
        _display.get(), cairo_xlib_surface_get_drawable(_buffer.get()), _window, _copyContext,
        static_cast<int>(rect.x), static_cast<int>(rect.y), static_cast<unsigned>(std::max(rect.width, 0.)),
        static_cast<unsigned>(std::max(rect.height, 0.)), static_cast<int>(rect.x), static_cast<int>(rect.y));
}

} // namespace tonewright::effect

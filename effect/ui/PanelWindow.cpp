// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PanelWindow.hpp"

#include "XErrorScope.hpp"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cairo-xlib.h>

#include <array>
#include <chrono>
#include <utility>

namespace tonewright::effect {
namespace {

constexpr double FrameSeconds = 0.028;        // thirty frames a second, however often the host calls
constexpr double ViewableCheckSeconds = 0.25; // see checkViewable
constexpr int ScrollUp = Button4;
constexpr int ScrollDown = Button5;

KeyModifiers modifiersOf(unsigned state) noexcept {
    return {(state & ShiftMask) != 0, (state & ControlMask) != 0};
}

// The connection broke: the window is gone, but the host must go on.
void connectionLost(Display*, void* alive) {
    *static_cast<bool*>(alive) = false;
}

struct KeyMeaning {
    KeySym symbol;
    Key key;
};

constexpr std::array<KeyMeaning, 29> KeyMeanings{{
    {XK_Tab, Key::Tab},
    {XK_ISO_Left_Tab, Key::Tab},
    {XK_KP_Tab, Key::Tab},
    {XK_Up, Key::Up},
    {XK_KP_Up, Key::Up},
    {XK_Down, Key::Down},
    {XK_KP_Down, Key::Down},
    {XK_Left, Key::Left},
    {XK_KP_Left, Key::Left},
    {XK_Right, Key::Right},
    {XK_KP_Right, Key::Right},
    {XK_Page_Up, Key::PageUp},
    {XK_KP_Page_Up, Key::PageUp},
    {XK_Page_Down, Key::PageDown},
    {XK_KP_Page_Down, Key::PageDown},
    {XK_Home, Key::Home},
    {XK_KP_Home, Key::Home},
    {XK_End, Key::End},
    {XK_KP_End, Key::End},
    {XK_Return, Key::Enter},
    {XK_KP_Enter, Key::Enter},
    {XK_ISO_Enter, Key::Enter},
    {XK_Escape, Key::Escape},
    {XK_BackSpace, Key::Backspace},
    {XK_Delete, Key::Delete},
    {XK_KP_Delete, Key::Delete},
    {XK_Cancel, Key::Escape},
    {XK_Begin, Key::Home},
    {XK_KP_Begin, Key::Home},
}};

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
    // Depth and colours are the screen's, whatever the parent's are: hence all three of them.
    XSetWindowAttributes wanted{};
    wanted.background_pixmap = None; // no flash before the first picture
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
    _display.reset(); // inside the scope: closing still reads errors
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
    if (_pendingMove) {
        _pendingMove = false;
        _panel.pointerMoved({static_cast<double>(_lastMove.x), static_cast<double>(_lastMove.y)},
                            modifiersOf(_lastMove.state));
    }
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

void PanelWindow::handle(XEvent& event) {
    // Only the latest position counts, and it must be handled before the events after it.
    if (_pendingMove && event.type != MotionNotify) {
        _pendingMove = false;
        _panel.pointerMoved({static_cast<double>(_lastMove.x), static_cast<double>(_lastMove.y)},
                            modifiersOf(_lastMove.state));
    }
    if (event.xany.window == _window) {
        handleOwn(event);
    } else if (event.type == ConfigureNotify && event.xconfigure.window == _parent) {
        resize(event.xconfigure.width, event.xconfigure.height);
    }
}

void PanelWindow::handleOwn(XEvent& event) {
    switch (event.type) {
    case Expose:
        copyToWindow({static_cast<double>(event.xexpose.x), static_cast<double>(event.xexpose.y),
                      static_cast<double>(event.xexpose.width), static_cast<double>(event.xexpose.height)});
        _viewable = true;
        break;
    case ConfigureNotify:
        sizeChanged(event.xconfigure.width, event.xconfigure.height);
        break;
    case MapNotify:
        _mapped = true;
        break;
    case UnmapNotify:
        _mapped = false;
        break;
    case VisibilityNotify: // sent only to windows that are viewable
        _viewable = true;
        _obscured = event.xvisibility.state == VisibilityFullyObscured;
        break;
    case ReparentNotify:
        followParent(event.xreparent.parent);
        break;
    case DestroyNotify: // by the host, with the parent
        _alive = false;
        _window = 0;
        break;
    case MotionNotify:
        _pendingMove = true;
        _lastMove = event.xmotion;
        break;
    case LeaveNotify:
        _panel.pointerLeft();
        break;
    case ButtonPress:
    case ButtonRelease:
        handleButton(event.xbutton);
        break;
    case KeyPress:
        handleKey(event.xkey);
        break;
    case FocusIn:
    case FocusOut:
        if (event.xfocus.detail != NotifyPointer) {
            _panel.keyboardArrived(event.type == FocusIn);
        }
        break;
    default:
        break;
    }
}

void PanelWindow::handleButton(const XButtonEvent& event) {
    const Point point{static_cast<double>(event.x), static_cast<double>(event.y)};
    if (event.type == ButtonRelease) {
        if (event.button == Button1) {
            _panel.pointerReleased(point);
        }
        return;
    }
    if (event.button == ScrollUp || event.button == ScrollDown) {
        _panel.wheel(point, event.button == ScrollUp ? 1 : -1, modifiersOf(event.state));
    } else if (event.button == Button1) {
        takeKeyboard(event.time);
        _panel.pointerPressed(point, static_cast<double>(event.time) / 1000.);
    }
}

void PanelWindow::handleKey(XKeyEvent& event) {
    std::array<char, 16> text{};
    KeySym symbol = NoSymbol;
    const int length =
        XLookupString(&event, text.data(), static_cast<int>(text.size()) - 1, &symbol, nullptr);
    const KeyModifiers modifiers = modifiersOf(event.state);
    for (const KeyMeaning& meaning : KeyMeanings) {
        if (meaning.symbol == symbol) {
            _panel.key(meaning.key, modifiers, {});
            return;
        }
    }
    // With one of these held it is a command to the host or the desktop, not text.
    const bool isCommand = (event.state & (ControlMask | Mod1Mask | Mod4Mask)) != 0;
    if (length == 1 && text[0] >= ' ' && text[0] < 127 && !isCommand) {
        _panel.key(Key::Character, modifiers, {text.data(), 1});
    }
}

void PanelWindow::takeKeyboard(Time time) {
    Window before = 0;
    int revert = 0;
    XGetInputFocus(_display.get(), &before, &revert);
    if (before != _window) {
        _keyboardBefore = before;
        XSetInputFocus(_display.get(), _window, RevertToParent, time);
    }
}

void PanelWindow::giveKeyboardBack() {
    if (_keyboardBefore != 0) {
        XSetInputFocus(_display.get(), _keyboardBefore, RevertToParent, CurrentTime);
        _keyboardBefore = 0;
    }
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

// X does not tell a window that one of its ancestors was unmapped. While the window seems to be visible it
// asks four times a second; while it is hidden it asks nothing, because an Expose or VisibilityNotify event
// arrives when it is shown again.
void PanelWindow::checkViewable() {
    const double now = steadySeconds();
    if (!isVisible() || now - _lastViewableCheck < ViewableCheckSeconds) {
        return;
    }
    _lastViewableCheck = now;
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(_display.get(), _window, &attributes) == 0) {
        return; // the event that says why is on its way
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

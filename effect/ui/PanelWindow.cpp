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

// The connection broke: the window is gone, but the host shall live on.
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
    : display_{std::move(display)}
    , panel_{[this, &actions] {
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
    Display* const display = display_.get();
    const XErrorScope errors{display};
    const int screen = DefaultScreen(display);
    root_ = RootWindow(display, screen);
    parent_ = parent != 0 ? parent : root_;
    width_ = static_cast<int>(NaturalWidth * scaleFactor);
    height_ = static_cast<int>(NaturalHeight * scaleFactor);

    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, parent_, &attributes) == 0) {
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
    window_ =
        XCreateWindow(display, parent_, 0, 0, static_cast<unsigned>(width_), static_cast<unsigned>(height_),
                      0, DefaultDepth(display, screen), InputOutput, DefaultVisual(display, screen),
                      CWBackPixmap | CWBorderPixel | CWColormap | CWBitGravity | CWEventMask, &wanted);
    XSizeHints hints{};
    hints.flags = PMinSize | PBaseSize;
    hints.min_width = static_cast<int>(MinimumWidth * scaleFactor);
    hints.min_height = static_cast<int>(MinimumHeight * scaleFactor);
    hints.base_width = width_;
    hints.base_height = height_;
    XSetWMNormalHints(display, window_, &hints);
    XStoreName(display, window_, "Tonewright");
    copyContext_ = XCreateGC(display, window_, 0, nullptr);
    XSetGraphicsExposures(display, copyContext_, False);
    if (parent_ != root_) {
        XSelectInput(display, parent_, StructureNotifyMask);
    }
    XMapWindow(display, window_);
    XSync(display, False);
    if (XGetWindowAttributes(display, window_, &attributes) == 0) {
        return false;
    }
    alive_ = true;
    XSetIOErrorExitHandler(display, connectionLost, &alive_);
    windowSurface_.reset(cairo_xlib_surface_create(display, window_, attributes.visual, width_, height_));
    sizeChanged(attributes.width, attributes.height);
    return true;
}

PanelWindow::~PanelWindow() {
    const XErrorScope errors{display_.get()};
    panel_.displayCloses();
    buffer_.reset();
    windowSurface_.reset();
    if (copyContext_ != nullptr) {
        XFreeGC(display_.get(), copyContext_);
    }
    if (window_ != 0) {
        XDestroyWindow(display_.get(), window_);
    }
    XSync(display_.get(), False);
    display_.reset(); // inside the scope: closing still reads errors
}

void PanelWindow::resize(int width, int height) {
    const XErrorScope errors{display_.get()};
    if (alive_ && width > 0 && height > 0 && (width != width_ || height != height_)) {
        XResizeWindow(display_.get(), window_, static_cast<unsigned>(width), static_cast<unsigned>(height));
        XFlush(display_.get());
    }
}

bool PanelWindow::idle() {
    if (!alive_) {
        return false;
    }
    const XErrorScope errors{display_.get()};
    while (alive_ && XPending(display_.get()) > 0) {
        XEvent event{};
        XNextEvent(display_.get(), &event);
        handle(event);
    }
    if (!alive_) {
        return false;
    }
    if (pendingMove_) {
        pendingMove_ = false;
        panel_.pointerMoved({static_cast<double>(lastMove_.x), static_cast<double>(lastMove_.y)},
                            modifiersOf(lastMove_.state));
    }
    checkViewable();
    if (!isVisible()) {
        return true;
    }
    const double now = steadySeconds();
    if (lastAdvance_ < 0. || now - lastAdvance_ >= FrameSeconds) {
        panel_.advance(lastAdvance_ < 0. ? 0. : std::min(now - lastAdvance_, 0.2));
        lastAdvance_ = now;
    }
    paint();
    return alive_;
}

void PanelWindow::handle(XEvent& event) {
    // Only the latest position counts, and it counts before what follows it.
    if (pendingMove_ && event.type != MotionNotify) {
        pendingMove_ = false;
        panel_.pointerMoved({static_cast<double>(lastMove_.x), static_cast<double>(lastMove_.y)},
                            modifiersOf(lastMove_.state));
    }
    if (event.xany.window == window_) {
        handleOwn(event);
    } else if (event.type == ConfigureNotify && event.xconfigure.window == parent_) {
        resize(event.xconfigure.width, event.xconfigure.height);
    }
}

void PanelWindow::handleOwn(XEvent& event) {
    switch (event.type) {
    case Expose:
        copyToWindow({static_cast<double>(event.xexpose.x), static_cast<double>(event.xexpose.y),
                      static_cast<double>(event.xexpose.width), static_cast<double>(event.xexpose.height)});
        viewable_ = true;
        break;
    case ConfigureNotify:
        sizeChanged(event.xconfigure.width, event.xconfigure.height);
        break;
    case MapNotify:
        mapped_ = true;
        break;
    case UnmapNotify:
        mapped_ = false;
        break;
    case VisibilityNotify: // comes only for windows that are viewable
        viewable_ = true;
        obscured_ = event.xvisibility.state == VisibilityFullyObscured;
        break;
    case ReparentNotify:
        followParent(event.xreparent.parent);
        break;
    case DestroyNotify: // by the host, with the parent
        alive_ = false;
        window_ = 0;
        break;
    case MotionNotify:
        pendingMove_ = true;
        lastMove_ = event.xmotion;
        break;
    case LeaveNotify:
        panel_.pointerLeft();
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
            panel_.keyboardArrived(event.type == FocusIn);
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
            panel_.pointerReleased(point);
        }
        return;
    }
    if (event.button == ScrollUp || event.button == ScrollDown) {
        panel_.wheel(point, event.button == ScrollUp ? 1 : -1, modifiersOf(event.state));
    } else if (event.button == Button1) {
        takeKeyboard(event.time);
        panel_.pointerPressed(point, static_cast<double>(event.time) / 1000.);
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
            panel_.key(meaning.key, modifiers, {});
            return;
        }
    }
    // With one of these held it is a command to the host or the desktop, and no text.
    const bool isCommand = (event.state & (ControlMask | Mod1Mask | Mod4Mask)) != 0;
    if (length == 1 && text[0] >= ' ' && text[0] < 127 && !isCommand) {
        panel_.key(Key::Character, modifiers, {text.data(), 1});
    }
}

void PanelWindow::takeKeyboard(Time time) {
    Window before = 0;
    int revert = 0;
    XGetInputFocus(display_.get(), &before, &revert);
    if (before != window_) {
        keyboardBefore_ = before;
        XSetInputFocus(display_.get(), window_, RevertToParent, time);
    }
}

void PanelWindow::giveKeyboardBack() {
    if (keyboardBefore_ != 0) {
        XSetInputFocus(display_.get(), keyboardBefore_, RevertToParent, CurrentTime);
        keyboardBefore_ = 0;
    }
}

void PanelWindow::followParent(Window parent) {
    if (parent_ != root_) {
        XSelectInput(display_.get(), parent_, NoEventMask);
    }
    parent_ = parent;
    if (parent_ != root_) {
        XSelectInput(display_.get(), parent_, StructureNotifyMask);
    }
}

void PanelWindow::sizeChanged(int width, int height) {
    if (width == width_ && height == height_ && buffer_) {
        return;
    }
    width_ = width;
    height_ = height;
    cairo_xlib_surface_set_size(windowSurface_.get(), width, height);
    buffer_.reset(cairo_surface_create_similar(windowSurface_.get(), CAIRO_CONTENT_COLOR, width, height));
    panel_.resize(width, height);
}

// X does not tell a window that one of its ancestors was unmapped. While the window seems to be
// visible it asks four times a second; when it is hidden it asks nothing, for it is told by an
// Expose or VisibilityNotify event when it comes back.
void PanelWindow::checkViewable() {
    const double now = steadySeconds();
    if (!isVisible() || now - lastViewableCheck_ < ViewableCheckSeconds) {
        return;
    }
    lastViewableCheck_ = now;
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display_.get(), window_, &attributes) == 0) {
        return; // the event that says why is on its way
    }
    viewable_ = attributes.map_state == IsViewable;
}

void PanelWindow::paint() {
    const auto damage = panel_.takeDamage();
    if (damage.empty()) {
        return;
    }
    cairo_t* const context = cairo_create(buffer_.get());
    for (const Rect& part : damage) {
        panel_.draw(context, part.snapped());
    }
    cairo_destroy(context);
    cairo_surface_flush(buffer_.get());
    for (const Rect& part : damage) {
        copyToWindow(part.snapped());
    }
    XFlush(display_.get());
}

void PanelWindow::copyToWindow(const Rect& rect) {
    XCopyArea(
        display_.get(), cairo_xlib_surface_get_drawable(buffer_.get()), window_, copyContext_,
        static_cast<int>(rect.x), static_cast<int>(rect.y), static_cast<unsigned>(std::max(rect.width, 0.)),
        static_cast<unsigned>(std::max(rect.height, 0.)), static_cast<int>(rect.x), static_cast<int>(rect.y));
}

} // namespace tonewright::effect

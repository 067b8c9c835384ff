// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Handles the X events of the panel's window: pointer, keys, focus, position and size.

#include "PanelWindow.hpp"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <array>

namespace tonewright::effect {
namespace {

constexpr int ScrollUp = Button4;
constexpr int ScrollDown = Button5;

KeyModifiers modifiersOf(unsigned state) noexcept {
    return {(state & ShiftMask) != 0, (state & ControlMask) != 0};
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

void PanelWindow::handle(XEvent& event) {
    // Successive motion events are merged. The last one must be handled before any other event.
    if (event.type != MotionNotify) {
        deliverMove();
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
    case VisibilityNotify: // sent only to viewable windows
        _viewable = true;
        _obscured = event.xvisibility.state == VisibilityFullyObscured;
        break;
    case ReparentNotify:
        followParent(event.xreparent.parent);
        break;
    case DestroyNotify: // destroyed by the host, with the parent
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
    // With Control, Alt or Super the key is a command to the host or the desktop, not text.
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

void PanelWindow::deliverMove() {
    if (_pendingMove) {
        _pendingMove = false;
        _panel.pointerMoved({static_cast<double>(_lastMove.x), static_cast<double>(_lastMove.y)},
                            modifiersOf(_lastMove.state));
    }
}

} // namespace tonewright::effect

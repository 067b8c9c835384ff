// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/InterfaceKeys.hpp"

#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <span>

namespace platform::lv2 {
namespace {

constexpr Time TypingMilliseconds = 5000;

struct Tree {
    Window parent = None;
    std::span<Window> children; // to be freed with XFree

    Tree(Display* display, Window window) {
        Window root = None, *list = nullptr;
        unsigned count = 0;
        if (XQueryTree(display, window, &root, &parent, &list, &count) != 0) children = {list, count};
    }
    ~Tree() {
        if (children.data() != nullptr) XFree(children.data());
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
};

bool isCharacter(KeySym key) {
    return (key > XK_space && key <= 0xff) || (key >= XK_KP_Multiply && key <= XK_KP_9) || key >= 0x1000000;
}

} // namespace

InterfaceKeys::InterfaceKeys(Display* display, Window socket)
    : _display(display)
    , _socket(socket) {
    const auto hold = [&](int keycode, unsigned modifiers) {
        XGrabKey(display, keycode, modifiers, socket, False, GrabModeAsync, GrabModeSync);
    };
    hold(XKeysymToKeycode(display, XK_Escape), AnyModifier);
    constexpr unsigned Locks[] = {0, LockMask, Mod2Mask, LockMask | Mod2Mask}; // Caps Lock, Num Lock
    for (const unsigned lock : Locks) {
        hold(XKeysymToKeycode(display, XK_space), lock);
        hold(AnyKey, lock | Mod1Mask);
    }
}

void InterfaceKeys::setChild(Window child) {
    _child = child;
    _isTyping = false;
    if (child != None) XSelectInput(_display, child, KeyPressMask | FocusChangeMask | PropertyChangeMask);
}

bool InterfaceKeys::isInside(Window window) const {
    while (window > PointerRoot && window != _socket) window = Tree(_display, window).parent;
    return window == _socket;
}

bool InterfaceKeys::isInterfaceFocused() const {
    Window focus = None;
    int revert = 0;
    XGetInputFocus(_display, &focus, &revert);
    return isInside(focus);
}

bool InterfaceKeys::giveKeyboard() {
    if (_child == None) return false;
    // all_event_masks combines the masks of all clients, so this client must stop selecting key presses while
    // it is read.
    XSelectInput(_display, _child, FocusChangeMask | PropertyChangeMask);
    XWindowAttributes attributes{};
    const bool isKnown = XGetWindowAttributes(_display, _child, &attributes) != 0;
    XSelectInput(_display, _child, KeyPressMask | FocusChangeMask | PropertyChangeMask);
    if (!isKnown || (attributes.all_event_masks & KeyPressMask) == 0 || attributes.map_state != IsViewable) {
        return false;
    }
    XSetInputFocus(_display, _child, RevertToParent, CurrentTime);
    XSync(_display, False);
    return true;
}

// Returns the input-only child window through which GTK receives keys. If the top-level window itself had the
// focus, the X server would send keys to the descendant under the pointer.
Window InterfaceKeys::windowOfTheToolkitsKeys() const {
    const Tree tree(_display, _topLevel);
    for (const Window child : tree.children) {
        XWindowAttributes attributes{};
        if (XGetWindowAttributes(_display, child, &attributes) != 0 && attributes.c_class == InputOnly) {
            return child;
        }
    }
    return _topLevel;
}

void InterfaceKeys::noteTyping(const XKeyEvent& event, KeySym key) {
    if ((event.state & (ControlMask | Mod1Mask | Mod4Mask)) == 0 && isCharacter(key)) {
        _isTyping = true;
        _typedAt = event.time;
    } else if (key == XK_Return || key == XK_KP_Enter || key == XK_Tab || key == XK_ISO_Left_Tab ||
               key == XK_Escape) {
        _isTyping = false;
    }
}

bool InterfaceKeys::goesToWindow(const XKeyEvent& event, KeySym key) {
    const bool isWithAlt = (event.state & Mod1Mask) != 0;
    if (!isWithAlt) {
        if (key != XK_space) return false;
        if (_isTyping && event.time - _typedAt < TypingMilliseconds) {
            _typedAt = event.time;
            return false;
        }
    }
    return _takes && _takes(key, isWithAlt);
}

bool InterfaceKeys::handle(XKeyEvent event) {
    const KeySym key = XLookupKeysym(&event, 0);
    if (event.window == _child) {
        if (event.type == KeyPress) noteTyping(event, key);
        return false;
    }
    // The grab is also activated when the pointer is over the interface but the focus is outside.
    const bool isOurs = event.type == KeyPress && isInterfaceFocused();
    // A replayed key goes to the window that has the focus by then, so moving the focus first redirects the
    // key.
    if (isOurs && _topLevel != None && goesToWindow(event, key)) {
        XSetInputFocus(_display, windowOfTheToolkitsKeys(), RevertToParent, CurrentTime);
    }
    XAllowEvents(_display, ReplayKeyboard, event.time);
    XFlush(_display);
    return isOurs && key == XK_Escape;
}

} // namespace platform::lv2

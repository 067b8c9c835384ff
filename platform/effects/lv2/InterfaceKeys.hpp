// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The keys that a plug-in's interface shares with the window around it: Escape leaves the interface, the
// space bar and Alt with a letter go to the window if it has a use for them. The X server holds back such a
// key until this has decided, so each key goes to one side only. Main thread only.
#pragma once

#include <X11/Xlib.h>
#include <functional>

namespace platform::lv2 {

class InterfaceKeys {
  public:
    /// Returns whether the window has a use for the key, and prepares for it.
    using WindowTakes = std::function<bool(KeySym key, bool isWithAlt)>;

    /// Shares the keys of what is inside `socket`.
    InterfaceKeys(Display* display, Window socket);

    void setWindowTakes(WindowTakes takes) { _takes = std::move(takes); }
    /// Sets the window that contains the socket; None if it is a child of the root.
    void setTopLevel(Window window) noexcept { _topLevel = window; }
    /// Sets the interface's own window; None if it has gone.
    void setChild(Window child);

    /// Moves the keyboard to the interface if it listens to keys, and returns whether it has the keyboard
    /// now.
    bool giveKeyboard();
    /// Decides on a key; returns whether it asks to leave the interface, which receives it as well.
    [[nodiscard]] bool handle(XKeyEvent event);
    /// Records that the keyboard went elsewhere.
    void keyboardLeft() noexcept { _isTyping = false; }

  private:
    [[nodiscard]] bool isInside(Window window) const;
    [[nodiscard]] bool isInterfaceFocused() const;
    [[nodiscard]] Window windowOfTheToolkitsKeys() const;
    void noteTyping(const XKeyEvent& event, KeySym key);
    [[nodiscard]] bool goesToWindow(const XKeyEvent& event, KeySym key);

    Display* const _display;
    const Window _socket;
    Window _topLevel = None, _child = None;
    WindowTakes _takes;
    // Nothing tells whether an interface has a text field: a letter or a digit means that text is being
    // typed, until the line ends or some seconds have passed.
    bool _isTyping = false;
    Time _typedAt = 0; // milliseconds of the server
};

} // namespace platform::lv2

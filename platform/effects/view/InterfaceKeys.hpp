// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decides which keys go to a plug-in's embedded interface and which to the window around it. Escape leaves
// the interface; the space bar and Alt with another key go to the window if it uses them. Passive grabs make
// the X server hold such a key until this class has decided, so only one side handles the key. Main thread
// only.
#pragma once

#include <X11/Xlib.h>
#include <functional>

namespace platform::lv2 {

class InterfaceKeys {
  public:
    /// Returns whether the window uses the key, and prepares the window for it.
    using WindowTakes = std::function<bool(KeySym key, bool isWithAlt)>;

    /// Grabs the shared keys of all windows inside `socket`.
    InterfaceKeys(Display* display, Window socket);

    void setWindowTakes(WindowTakes takes) { _takes = std::move(takes); }
    /// Sets the top-level window that contains the socket, or None if the socket is a child of the root
    /// window.
    void setTopLevel(Window window) noexcept { _topLevel = window; }
    /// Sets the interface's window, or None if it no longer exists.
    void setChild(Window child);

    /// Moves the keyboard focus to the interface if the interface handles keys. Returns whether the focus was
    /// moved.
    bool giveKeyboard();
    /// Decides where a key goes. Returns true if the key was Escape, which leaves the interface; the
    /// interface receives that key too.
    [[nodiscard]] bool handle(XKeyEvent event);
    /// Records that the interface has lost the keyboard focus.
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
    // The host cannot know whether an interface's text field has the focus. After a letter or a digit, it
    // assumes that the user types text until the line ends or a few seconds have passed.
    bool _isTyping = false;
    Time _typedAt = 0; // in milliseconds of the X server
};

} // namespace platform::lv2

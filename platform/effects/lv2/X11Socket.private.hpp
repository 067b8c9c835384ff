// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The X window in which a plug-in's interface makes its own. It has a connection of its own and the screen's
// default depth, visual and colours, whatever the toolkit's windows have, and starts unmapped under the root,
// so that an interface can be made, or fail, before there is a place for it. Sizes are device pixels.
// Main thread only. Private to platform/effects.
#pragma once

#include <memory>
#include <optional>

namespace platform::lv2 {

struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// Have errors of the X protocol that interfaces make said on standard error, where the library would end the
/// process. Errors on the toolkit's connection, `toolkitDisplay` (a Display*), stay with the toolkit.
void tolerateInterfaceErrors(void* toolkitDisplay);

class X11Socket {
  public:
    using WindowId = unsigned long;

    /// Make the window on the display of that name; none when the display does not answer.
    [[nodiscard]] static std::unique_ptr<X11Socket> make(const char* displayName);
    ~X11Socket();
    X11Socket(const X11Socket&) = delete;
    X11Socket& operator=(const X11Socket&) = delete;

    /// Give the window to hand to the interface.
    [[nodiscard]] WindowId window() const noexcept;

    /// Look for the interface's own window (`named`, when it is in the socket), and keep its size as the
    /// natural one. Tells whether there is one.
    bool adoptChild(WindowId named);
    /// Note the size that the interface asks for.
    void setNaturalSize(int width, int height) noexcept;
    /// Keep the interface at its natural size.
    void keepNaturalSize() noexcept;

    /// Move under `parent`; absent: unmapped under the root.
    void moveTo(std::optional<WindowId> parent);
    /// Show the interface at `area` of the parent, cut off outside `visible`; a visible part without extent
    /// unmaps the socket. Does nothing when nothing changed.
    void place(const PixelRect& area, const PixelRect& visible);
    void hide();
    /// Follow what the interface does with its window: its size, its end. Tells whether Escape was pressed in
    /// it, which asks to leave it; the interface hears of the key as well.
    [[nodiscard]] bool followChild();
    /// Give the keyboard to the interface, if it wants keys at all. Tells whether it has it now.
    bool giveKeyboard();

  private:
    struct Implementation;
    explicit X11Socket(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform::lv2

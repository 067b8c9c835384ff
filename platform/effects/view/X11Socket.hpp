// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The X window in which a plug-in's interface creates its window. The socket has its own connection to the X
// server, and the screen's default depth, visual and colormap, even if GTK's windows have others. It is
// created unmapped as a child of the root window, so that the interface can be created before there is a GTK
// window for it. Sizes are in device pixels. Main thread only.
#pragma once

#include "platform/effects/view/InterfaceKeys.hpp"

#include <algorithm>
#include <memory>
#include <optional>

namespace platform::lv2 {

struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// Returns the intersection of `a` and `b`. If it is empty, the width or the height is 0 or negative.
[[nodiscard]] inline PixelRect intersection(const PixelRect& a, const PixelRect& b) {
    const int left = std::max(a.x, b.x), top = std::max(a.y, b.y);
    return {left, top, std::min(a.x + a.width, b.x + b.width) - left,
            std::min(a.y + a.height, b.y + b.height) - top};
}

struct PixelSize {
    int width = 0, height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// Installs an X error handler that reports the protocol errors of interfaces on standard error, instead of
/// ending the process. Errors on GTK's connection, `toolkitDisplay` (a Display*), are still passed to GTK's
/// handler.
void tolerateInterfaceErrors(void* toolkitDisplay);

class X11Socket {
  public:
    using WindowId = unsigned long;

    /// Creates the window on the named display, or returns null if the X server accepts no connection.
    [[nodiscard]] static std::unique_ptr<X11Socket> make(const char* displayName);
    ~X11Socket();
    X11Socket(const X11Socket&) = delete;
    X11Socket& operator=(const X11Socket&) = delete;

    /// Returns the window to pass to the interface.
    [[nodiscard]] WindowId window() const noexcept;
    /// Returns the file descriptor of the connection. It becomes readable when `followChild` must be called.
    [[nodiscard]] int connection() const noexcept;
    [[nodiscard]] InterfaceKeys& keys() noexcept;

    /// Looks for the interface's window in the socket, preferably `named`; the interface may create it late.
    /// Its size becomes the requested size, unless the interface has requested one. Returns whether a window
    /// was found.
    bool adoptChild(WindowId named);
    [[nodiscard]] bool hasChild() const noexcept;
    /// Records the size that the interface requests.
    void setWantedSize(const PixelSize& size);
    /// Never resizes the interface to a size other than the one that it requests.
    void keepWantedSize();
    /// Return the size that the interface requests, and the size below which it is clipped instead of
    /// resized.
    [[nodiscard]] PixelSize wantedSize() const noexcept;
    [[nodiscard]] PixelSize smallestSize() const noexcept;

    /// Unmaps the socket and moves it to `parent`, or to the root window if there is no value.
    void moveTo(std::optional<WindowId> parent);
    /// Shows the interface centred in the rectangle `area` of the parent, in the size that SizeRules computes
    /// for it, clipped to `visible`. Does nothing if neither rectangle has changed.
    void place(const PixelRect& area, const PixelRect& visible);
    void hide();
    /// Handles the pending events of the interface's window: changes of its size, its destruction, and shared
    /// keys. Returns whether Escape was pressed, which moves the focus out of the interface.
    [[nodiscard]] bool followChild();

  private:
    struct Implementation;
    explicit X11Socket(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform::lv2

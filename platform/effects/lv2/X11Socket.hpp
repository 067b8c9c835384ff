// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The X window in which a plug-in's interface creates its own. It has its own connection and the screen's
// default depth, visual and colours, whatever the toolkit's windows have, and starts unmapped below the root,
// so that an interface can be created, or fail, before there is a place for it. Sizes are device pixels. Main
// thread only.
#pragma once

#include "platform/effects/lv2/InterfaceKeys.hpp"

#include <algorithm>
#include <memory>
#include <optional>

namespace platform::lv2 {

struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;

    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// Returns the intersection; without extent if it is empty.
[[nodiscard]] inline PixelRect intersection(const PixelRect& a, const PixelRect& b) {
    const int left = std::max(a.x, b.x), top = std::max(a.y, b.y);
    return {left, top, std::min(a.x + a.width, b.x + b.width) - left,
            std::min(a.y + a.height, b.y + b.height) - top};
}

struct PixelSize {
    int width = 0, height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// Reports errors of the X protocol that interfaces make on standard error, instead of letting the library
/// end the process. Errors on the toolkit's connection, `toolkitDisplay` (a Display*), stay with the toolkit.
void tolerateInterfaceErrors(void* toolkitDisplay);

class X11Socket {
  public:
    using WindowId = unsigned long;

    /// Creates the window on the display of that name; null if the display does not answer.
    [[nodiscard]] static std::unique_ptr<X11Socket> make(const char* displayName);
    ~X11Socket();
    X11Socket(const X11Socket&) = delete;
    X11Socket& operator=(const X11Socket&) = delete;

    /// Returns the window to pass to the interface.
    [[nodiscard]] WindowId window() const noexcept;
    /// Returns the descriptor of the connection, which becomes readable when there are events to follow.
    [[nodiscard]] int connection() const noexcept;
    [[nodiscard]] InterfaceKeys& keys() noexcept;

    /// Looks for the interface's own window (`named`, if it is in the socket), which may appear late, and
    /// takes its size for the one that it requests. Returns whether it is there.
    bool adoptChild(WindowId named);
    [[nodiscard]] bool hasChild() const noexcept;
    /// Records the size that the interface requests.
    void setWantedSize(const PixelSize& size);
    /// Keeps the interface at the size that it requests.
    void keepWantedSize();
    /// Returns the size that the interface requests, and the one below which it is clipped rather than
    /// shrunk.
    [[nodiscard]] PixelSize wantedSize() const noexcept;
    [[nodiscard]] PixelSize smallestSize() const noexcept;

    /// Moves to `parent`; absent: unmapped below the root.
    void moveTo(std::optional<WindowId> parent);
    /// Shows the interface in the middle of `area` of the parent, as large as it requests, clipped to
    /// `visible`. Does nothing if nothing changed.
    void place(const PixelRect& area, const PixelRect& visible);
    void hide();
    /// Follows what the interface does with its window: its size, its end, its keys. Returns whether Escape
    /// was pressed in it, which asks to leave it.
    [[nodiscard]] bool followChild();

  private:
    struct Implementation;
    explicit X11Socket(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform::lv2

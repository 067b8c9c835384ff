// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The panel's X11 window, with its own connection, event handling and painting. It can be created in any
// window of the host, mapped or not. Used only on the host's user interface thread.
#pragma once

#include "Panel.hpp"

#include <X11/Xlib.h>
#include <cairo.h>

#include <functional>
#include <memory>

namespace tonewright::effect {

struct PanelWindowConfig {
    Window parent = 0;       ///< 0 for a top-level window
    double scaleFactor = 1.; ///< applied to the natural size
    PanelActions actions;
};

class PanelWindow {
  public:
    /// Opens the window, or returns null if there is no display or the parent does not exist.
    [[nodiscard]] static std::unique_ptr<PanelWindow> open(PanelWindowConfig config);
    ~PanelWindow();
    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;

    /// Handles the pending events and repaints changed areas. Returns false if the window no longer exists.
    bool idle();

    /// Returns whether any part of the window seems to be visible.
    [[nodiscard]] bool isVisible() const noexcept { return _mapped && _viewable && !_obscured; }

    /// Resizes the window.
    void resize(int width, int height);

    [[nodiscard]] Panel& panel() noexcept { return _panel; }
    [[nodiscard]] Window window() const noexcept { return _window; }
    [[nodiscard]] int width() const noexcept { return _width; }
    [[nodiscard]] int height() const noexcept { return _height; }

  private:
    struct CloseDisplay {
        void operator()(Display* display) const noexcept { XCloseDisplay(display); }
    };
    struct DestroySurface {
        void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
    };
    using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;

    PanelWindow(std::unique_ptr<Display, CloseDisplay> display, PanelActions actions);
    bool create(Window parent, double scaleFactor);
    void handle(XEvent& event);
    void handleOwn(XEvent& event);
    void deliverMove();
    void handleKey(XKeyEvent& event);
    void handleButton(const XButtonEvent& event);
    void takeKeyboard(Time time);
    void giveKeyboardBack();
    void followParent(Window parent);
    void sizeChanged(int width, int height);
    void checkViewable();
    void paint();
    void copyToWindow(const Rect& rect);

    std::unique_ptr<Display, CloseDisplay> _display;
    Panel _panel;
    Window _window = 0;
    Window _parent = 0;
    Window _root = 0;
    Window _keyboardBefore = 0;
    GC _copyContext = nullptr;
    Surface _windowSurface;
    Surface _buffer; // a pixmap with the window's contents
    int _width = 0;
    int _height = 0;
    bool _alive = false;
    bool _mapped = false;
    bool _viewable = false;
    bool _obscured = true;
    bool _pendingMove = false;
    XMotionEvent _lastMove{};
    double _lastViewableCheck = -1.;
    double _lastAdvance = -1.;
};

/// Returns the time of the steady clock in seconds.
[[nodiscard]] double steadySeconds() noexcept;

} // namespace tonewright::effect

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The panel, independent of the window system: its drawing and its reaction to pointer and keys. Used only on
// the host's user interface thread.
#pragma once

#include "Geometry.hpp"
#include "Layout.hpp"
#include "Menu.hpp"
#include "SignalView.hpp"
#include "drawControls.hpp"
#include "effect/dsp/Parameters.hpp"
#include "effect/dsp/Processor.hpp"

#include <cairo.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright::effect {

/// The calls that the panel makes to its surroundings.
struct PanelActions {
    std::function<void(Parameter, float)> write;   ///< sets a control of the plug-in
    std::function<void(Parameter, bool)> touch;    ///< reports that a gesture begins (true) or ends
    std::function<void()> releaseKeyboard = [] {}; ///< returns the keyboard focus to the host
};

/// The factor for movements with Shift or Control held.
inline constexpr double FineFactor = 0.1;

struct KeyModifiers {
    bool shift = false;
    bool control = false;
    [[nodiscard]] bool fine() const noexcept { return shift || control; }
};

enum class Key {
    Character,
    Tab,
    Up,
    Down,
    Left,
    Right,
    PageUp,
    PageDown,
    Home,
    End,
    Enter,
    Escape,
    Backspace,
    Delete,
};

class Panel {
  public:
    explicit Panel(PanelActions actions);

    void resize(int width, int height);

    /// Shows a value that the host reports.
    void showValue(Parameter parameter, float value);

    /// Shows a display frame from the plug-in.
    void showFrame(const DisplayFrame& frame);

    /// Advances all animations.
    void advance(double seconds);

    // Pointer and keyboard events. `seconds` is the time of a steady clock, used to detect double clicks.
    void pointerMoved(Point point, KeyModifiers modifiers);
    void pointerPressed(Point point, double seconds);
    void pointerReleased(Point point);
    void pointerLeft();
    void wheel(Point point, int steps, KeyModifiers modifiers);
    /// Handles a key, and returns whether the panel used it.
    bool key(Key key, KeyModifiers modifiers, std::string_view text);
    void keyboardArrived(bool arrived);

    /// Returns the areas to be redrawn and clears the list.
    [[nodiscard]] std::vector<Rect> takeDamage();
    /// Draws everything that overlaps the rectangle.
    void draw(cairo_t* context, const Rect& part);

    /// Releases the resources in the X server. Must be called before the display is closed.
    void displayCloses() noexcept { _signal.forgetBackdrop(); }

    [[nodiscard]] const Layout& layout() const noexcept { return _layout; }
    [[nodiscard]] const ParameterValues& values() const noexcept { return _values; }
    [[nodiscard]] const Menu& menu() const noexcept { return _menu; }
    [[nodiscard]] std::string presetName() const;

  private:
    struct Drag {
        std::size_t control;
        Point last;
        double travel;
    };

    void damage(const Rect& rect);
    void damageControl(std::optional<std::size_t> control);
    void damageParameter(Parameter parameter);
    void setFocus(std::optional<std::size_t> control);
    void setHover(std::optional<std::size_t> control);
    void setValue(Parameter parameter, float value);
    void step(const PanelControl& control, int steps, bool fine);
    void activate(std::size_t control);
    void openMenu(std::size_t control);
    void chooseMenuItem(std::size_t item);
    void closeMenu();
    void stepPreset(int by);
    void applyPreset(std::size_t preset);
    void beginEdit(std::string text);
    void endEdit(bool keep);
    void endDrag();
    bool menuKey(Key key);
    bool editKey(Key key, std::string_view text);
    bool knobKey(Key key, KeyModifiers modifiers, std::string_view text);
    [[nodiscard]] ControlLook lookOf(std::size_t control) const;
    [[nodiscard]] Rect displayArea() const noexcept;

    PanelActions _actions;
    Layout _layout;
    ParameterValues _values;
    SignalView _signal;
    std::size_t _cutoffKnob = 0;
    float _shownCutoff = 0.F;
    std::optional<std::size_t> _focus;
    bool _hasKeyboard = false;
    std::optional<std::size_t> _hover;
    std::optional<Drag> _drag;
    std::optional<std::size_t> _pressed; // the pressed button, which acts on release
    std::optional<std::size_t> _lastClicked;
    double _lastClickSeconds = -10.;
    Menu _menu;
    std::size_t _menuOwner = 0;
    std::optional<std::string> _edit;
    std::size_t _lastPreset = 0; // the preset last applied or matched
    std::vector<Rect> _damage;   // areas to be redrawn, which do not overlap
};

} // namespace tonewright::effect

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The panel's reaction to pointer and keyboard.

#include "Panel.hpp"
#include "effect/dsp/Presets.hpp"

#include <cmath>

namespace tonewright::effect {
namespace {

constexpr double DragPixels = 180.; // design pixels, for the whole travel
constexpr double FineFactor = 0.1;
constexpr double WheelStep = 0.02;
constexpr double KeyStep = 0.01;
constexpr double DoubleClickSeconds = 0.35;

bool hasSteps(const ParameterInfo& p) noexcept {
    return p.curve == Curve::Integer || p.curve == Curve::Choice || p.curve == Curve::Toggle;
}

} // namespace

void Panel::setFocus(std::optional<std::size_t> control) {
    if (_focus != control) {
        endEdit(true);
        damageControl(_focus);
        _focus = control;
        damageControl(_focus);
    }
}

void Panel::setHover(std::optional<std::size_t> control) {
    if (_hover != control) {
        damageControl(_hover);
        _hover = control;
        damageControl(_hover);
    }
}

void Panel::setValue(Parameter parameter, float value) {
    const float inside = sanitised(info(parameter), value);
    if (_values[index(parameter)] == inside) {
        return;
    }
    _values[index(parameter)] = inside;
    _actions.write(parameter, inside);
    damageParameter(parameter);
}

void Panel::step(const PanelControl& control, int steps, bool fine) {
    const ParameterInfo& p = info(control.parameter);
    const float value = _values[index(control.parameter)];
    if (hasSteps(p)) {
        setValue(control.parameter, value + static_cast<float>(steps));
    } else {
        const double by = steps * (fine ? KeyStep * FineFactor : KeyStep);
        setValue(control.parameter, fromTravel(p, toTravel(p, value) + static_cast<float>(by)));
    }
}

void Panel::pointerMoved(Point point, KeyModifiers modifiers) {
    if (_menu.isOpen()) {
        if (_menu.highlight(_menu.itemAt(point))) {
            damage(_menu.area());
        }
        return;
    }
    if (!_drag) {
        setHover(_layout.controlAt(point));
        return;
    }
    const Parameter parameter = _layout.controls[_drag->control].parameter;
    const double pixels = _drag->last.y - point.y + 0.3 * (point.x - _drag->last.x);
    const double range = DragPixels * std::max(_layout.unit, 0.6);
    _drag->last = point;
    _drag->travel = std::clamp(_drag->travel + pixels / range * (modifiers.fine() ? FineFactor : 1.), 0., 1.);
    setValue(parameter, fromTravel(info(parameter), static_cast<float>(_drag->travel)));
}

void Panel::pointerPressed(Point point, double seconds) {
    if (_menu.isOpen()) {
        const auto item = _menu.itemAt(point);
        item ? chooseMenuItem(*item) : closeMenu();
        return;
    }
    const auto hit = _layout.controlAt(point);
    setHover(hit);
    setFocus(hit);
    if (!hit) {
        return;
    }
    const bool twice = _lastClicked == hit && seconds - _lastClickSeconds < DoubleClickSeconds;
    _lastClicked = twice ? std::nullopt : hit;
    _lastClickSeconds = seconds;
    const PanelControl& control = _layout.controls[*hit];
    switch (control.kind) {
    case ControlKind::Knob:
        endEdit(false);
        _actions.touch(control.parameter, true);
        if (twice) {
            setValue(control.parameter, info(control.parameter).defaultValue);
        }
        _drag =
            Drag{*hit, point,
                 static_cast<double>(toTravel(info(control.parameter), _values[index(control.parameter)]))};
        break;
    case ControlKind::Selector:
    case ControlKind::PresetMenu:
        openMenu(*hit);
        return;
    default:
        _pressed = hit;
        break;
    }
    damageControl(hit);
}

void Panel::pointerReleased(Point point) {
    endDrag();
    if (_pressed) {
        const std::size_t button = *_pressed;
        _pressed.reset();
        damageControl(button);
        if (_layout.controls[button].area.contains(point)) {
            activate(button);
        }
    }
}

void Panel::endDrag() {
    if (_drag) {
        const std::size_t control = _drag->control;
        _drag.reset();
        _actions.touch(_layout.controls[control].parameter, false);
        damageControl(control);
    }
}

void Panel::pointerLeft() {
    if (!_drag) {
        setHover(std::nullopt);
    }
}

void Panel::wheel(Point point, int steps, KeyModifiers modifiers) {
    if (_menu.isOpen()) {
        _menu.move(-steps);
        damage(_menu.area());
        return;
    }
    const auto hit = _layout.controlAt(point);
    if (!hit || _drag) {
        return;
    }
    const PanelControl& control = _layout.controls[*hit];
    const ParameterInfo& p = info(control.parameter);
    switch (control.kind) {
    case ControlKind::Knob:
        if (hasSteps(p)) {
            step(control, steps, false);
        } else {
            const double by = steps * WheelStep * (modifiers.fine() ? FineFactor : 1.);
            setValue(control.parameter,
                     fromTravel(p, toTravel(p, _values[index(control.parameter)]) + static_cast<float>(by)));
        }
        break;
    case ControlKind::Selector: // a list reads downwards
        setValue(control.parameter, _values[index(control.parameter)] - static_cast<float>(steps));
        break;
    case ControlKind::Power:
        break;
    default:
        stepPreset(-steps);
        break;
    }
}

void Panel::activate(std::size_t control) {
    const PanelControl& c = _layout.controls[control];
    switch (c.kind) {
    case ControlKind::PresetMenu:
    case ControlKind::Selector:
        openMenu(control);
        break;
    case ControlKind::PreviousPreset:
        stepPreset(-1);
        break;
    case ControlKind::NextPreset:
        stepPreset(1);
        break;
    case ControlKind::Power:
        setValue(c.parameter, _values[index(c.parameter)] > 0.5F ? 0.F : 1.F);
        break;
    case ControlKind::Knob:
        beginEdit({});
        break;
    }
}

void Panel::openMenu(std::size_t control) {
    const PanelControl& c = _layout.controls[control];
    std::vector<std::string> items;
    std::optional<std::size_t> current;
    if (c.kind == ControlKind::PresetMenu) {
        for (const Preset& preset : factoryPresets()) {
            items.emplace_back(preset.name);
        }
        current = matchingPreset(_values);
    } else {
        for (const auto choice : info(c.parameter).choices) {
            items.emplace_back(choice);
        }
        current = static_cast<std::size_t>(_values[index(c.parameter)]);
    }
    _menuOwner = control;
    _menu.open(c.area, _layout.window, _layout.unit, std::move(items), current);
    damage(_menu.area());
    damageControl(control);
}

void Panel::closeMenu() {
    damage(_menu.area());
    damageControl(_menuOwner);
    _menu.close();
}

void Panel::chooseMenuItem(std::size_t item) {
    const PanelControl& owner = _layout.controls[_menuOwner];
    closeMenu();
    if (owner.kind == ControlKind::PresetMenu) {
        applyPreset(item);
    } else {
        setValue(owner.parameter, static_cast<float>(item));
    }
}

void Panel::stepPreset(int by) {
    const int count = static_cast<int>(factoryPresets().size());
    const int from = static_cast<int>(matchingPreset(_values).value_or(_lastPreset));
    applyPreset(static_cast<std::size_t>(((from + by) % count + count) % count));
}

void Panel::applyPreset(std::size_t preset) {
    endEdit(false);
    _lastPreset = preset;
    const ParameterValues& wanted = factoryPresets()[preset].values;
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        if (i != index(Parameter::Enabled)) {
            setValue(static_cast<Parameter>(i), wanted[i]);
        }
    }
    damage(_layout.window);
}

void Panel::beginEdit(std::string text) {
    _edit = std::move(text);
    damageControl(_focus);
}

void Panel::endEdit(bool keep) {
    if (!_edit) {
        return;
    }
    const std::string text = std::move(*_edit);
    _edit.reset();
    if (_focus) {
        const Parameter parameter = _layout.controls[*_focus].parameter;
        if (const auto value = keep ? parseValue(info(parameter), text) : std::nullopt) {
            setValue(parameter, *value);
        }
    }
    damageControl(_focus);
}

bool Panel::menuKey(Key key) {
    switch (key) {
    case Key::Up:
    case Key::Left:
        _menu.move(-1);
        break;
    case Key::Down:
    case Key::Right:
        _menu.move(1);
        break;
    case Key::Home:
        _menu.highlight(0);
        break;
    case Key::End:
        _menu.highlight(0);
        _menu.move(-1);
        break;
    case Key::Enter:
        if (const auto item = _menu.highlighted()) {
            chooseMenuItem(*item);
        }
        return true;
    default:
        closeMenu();
        return true;
    }
    damage(_menu.area());
    return true;
}

bool Panel::editKey(Key key, std::string_view text) {
    switch (key) {
    case Key::Character:
        if (_edit->size() + text.size() <= 10) {
            *_edit += text;
        }
        break;
    case Key::Backspace:
        if (!_edit->empty()) {
            _edit->pop_back();
        }
        break;
    case Key::Enter:
        endEdit(true);
        break;
    case Key::Escape:
        endEdit(false);
        break;
    default:
        return false;
    }
    damageControl(_focus);
    return true;
}

bool Panel::knobKey(Key key, KeyModifiers modifiers, std::string_view text) {
    const PanelControl& control = _layout.controls[*_focus];
    const bool hasValue = control.kind == ControlKind::Knob || control.kind == ControlKind::Selector;
    const ParameterInfo& p = info(control.parameter);
    const int upwards = control.kind == ControlKind::Selector ? -1 : 1; // a list reads downwards
    switch (key) {
    case Key::Up:
    case Key::Right:
    case Key::Down:
    case Key::Left: {
        const bool up =
            key == Key::Up || (key == Key::Right && upwards > 0) || (key == Key::Left && upwards < 0);
        if (hasValue) {
            step(control, up ? upwards : -upwards, modifiers.fine());
        } else if (control.kind != ControlKind::Power) {
            stepPreset(key == Key::Up || key == Key::Left ? -1 : 1);
        }
        return true;
    }
    case Key::PageUp:
    case Key::PageDown:
        if (hasValue) {
            step(control, (key == Key::PageUp ? upwards : -upwards) * (p.curve == Curve::Integer ? 12 : 10),
                 false);
        }
        return hasValue;
    case Key::Home:
    case Key::End:
        if (hasValue) {
            setValue(control.parameter, key == Key::Home ? p.minimum : p.maximum);
        }
        return hasValue;
    case Key::Backspace:
    case Key::Delete:
        if (hasValue) {
            setValue(control.parameter, p.defaultValue);
        }
        return hasValue;
    case Key::Enter:
        activate(*_focus);
        return true;
    case Key::Character:
        if (control.kind == ControlKind::Knob && !text.empty() && text != " ") {
            beginEdit(std::string{text});
            return true;
        }
        if (control.kind != ControlKind::Knob && text == " ") {
            activate(*_focus);
            return true;
        }
        return false;
    default:
        return false;
    }
}

bool Panel::key(Key key, KeyModifiers modifiers, std::string_view text) {
    if (_menu.isOpen()) {
        return menuKey(key);
    }
    if (_edit && editKey(key, text)) {
        return true;
    }
    if (key == Key::Tab) {
        const std::size_t count = _layout.controls.size();
        const std::size_t from = _focus ? *_focus : (modifiers.shift ? 0 : count - 1);
        setFocus((from + (modifiers.shift ? count - 1 : 1)) % count);
        return true;
    }
    if (key == Key::Escape) {
        setFocus(std::nullopt);
        _actions.releaseKeyboard();
        return true;
    }
    return _focus && knobKey(key, modifiers, text);
}

void Panel::keyboardArrived(bool arrived) {
    _hasKeyboard = arrived;
    if (!arrived) {
        endEdit(true);
        if (_menu.isOpen()) {
            closeMenu();
        }
    }
    damageControl(_focus);
}

} // namespace tonewright::effect

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The panel's handling of pointer events.

#include "Panel.hpp"

#include <algorithm>

namespace tonewright::effect {
namespace {

constexpr double DragPixels = 180.; // design pixels for the whole travel of a knob
constexpr double WheelStep = 0.02;
constexpr double DoubleClickSeconds = 0.35;

} // namespace

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
    case ControlKind::Selector: // the values of a list increase downwards
        setValue(control.parameter, _values[index(control.parameter)] - static_cast<float>(steps));
        break;
    case ControlKind::Power:
        break;
    default:
        stepPreset(-steps);
        break;
    }
}

} // namespace tonewright::effect

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The panel's handling of key events.

#include "Panel.hpp"

namespace tonewright::effect {

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
    const int upwards =
        control.kind == ControlKind::Selector ? -1 : 1; // the values of a list increase downwards
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

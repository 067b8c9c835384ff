// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The actions of controls, for pointer and keyboard: changing values, menus, presets, typing values.

#include "Panel.hpp"
#include "effect/dsp/Presets.hpp"

namespace tonewright::effect {
namespace {

constexpr double KeyStep = 0.01;

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

} // namespace tonewright::effect

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Panel.hpp"

#include "Theme.hpp"
#include "effect/dsp/Presets.hpp"

#include <utility>

namespace tonewright::effect {

Panel::Panel(PanelActions actions)
    : _actions{std::move(actions)}
    , _values{defaultValues()} {
    resize(NaturalWidth, NaturalHeight);
}

void Panel::resize(int width, int height) {
    endDrag();
    _edit.reset();
    _menu.close();
    _pressed.reset();
    _lastClicked.reset();
    _hover.reset();
    _layout = layOut(width, height); // the order of the controls is the same, so the focus can stay
    for (std::size_t i = 0; i < _layout.controls.size(); ++i) {
        if (_layout.controls[i].kind == ControlKind::Knob &&
            _layout.controls[i].parameter == Parameter::Cutoff) {
            _cutoffKnob = i;
        }
    }
    damage(_layout.window);
    _signal.forgetBackdrop();
    _signal.invalidate();
}

void Panel::showValue(Parameter parameter, float value) {
    if (_drag && _layout.controls[_drag->control].parameter == parameter) {
        return; // the host may still report the user's earlier changes
    }
    const float inside = sanitised(info(parameter), value);
    if (_values[index(parameter)] != inside) {
        _values[index(parameter)] = inside;
        if (const auto preset = matchingPreset(_values)) {
            _lastPreset = *preset;
        }
        damageParameter(parameter);
    }
}

void Panel::showFrame(const DisplayFrame& frame) {
    _signal.push(frame);
}

void Panel::advance(double seconds) {
    if (_signal.advance(seconds)) {
        damage(displayArea());
        if (_signal.cutoffHertz() != _shownCutoff) {
            _shownCutoff = _signal.cutoffHertz();
            damageControl(_cutoffKnob);
        }
    }
}

Rect Panel::displayArea() const noexcept {
    return _layout.inputMeter.united(_layout.outputMeter).united(_layout.display).snapped();
}

void Panel::damage(const Rect& rect) {
    Rect whole = rect;
    // A united rectangle may overlap others, so the search restarts.
    for (auto other = _damage.begin(); other != _damage.end();) {
        if (other->meets(whole)) {
            whole = whole.united(*other);
            _damage.erase(other);
            other = _damage.begin();
        } else {
            ++other;
        }
    }
    if (!whole.empty()) {
        _damage.push_back(whole);
    }
}

void Panel::damageControl(std::optional<std::size_t> control) {
    if (control) {
        damage(_layout.controls[*control].area.inset(-2.).snapped());
    }
}

void Panel::damageParameter(Parameter parameter) {
    for (std::size_t i = 0; i < _layout.controls.size(); ++i) {
        const PanelControl& control = _layout.controls[i];
        const bool shows = control.kind == ControlKind::Knob || control.kind == ControlKind::Selector ||
                           control.kind == ControlKind::Power;
        if ((shows && control.parameter == parameter) || control.kind == ControlKind::PresetMenu) {
            damageControl(i);
        }
    }
    if (parameter == Parameter::Enabled) {
        damage(_layout.window); // all controls change their brightness
    }
    _signal.invalidate();
}

std::string Panel::presetName() const {
    const auto preset = matchingPreset(_values);
    std::string name{factoryPresets()[preset.value_or(_lastPreset)].name};
    return preset ? name : name + " (edited)";
}

ControlLook Panel::lookOf(std::size_t control) const {
    const PanelControl& c = _layout.controls[control];
    ControlLook look;
    look.value = _values[index(c.parameter)];
    look.focused = _hasKeyboard && _focus == control;
    look.hovered = _hover == control;
    look.active = (_drag && _drag->control == control) || (_menu.isOpen() && _menuOwner == control) ||
                  _pressed == control;
    look.enabled = _values[index(Parameter::Enabled)] > 0.5F;
    if (c.kind == ControlKind::PresetMenu) {
        look.text = presetName();
        look.enabled = true;
    } else if (c.kind == ControlKind::Knob || c.kind == ControlKind::Selector) {
        look.text = valueText(info(c.parameter), look.value);
    }
    if (_edit && _focus == control) {
        look.text = *_edit + "_";
        look.active = true;
    }
    if (c.kind == ControlKind::Knob && c.parameter == Parameter::Cutoff && _signal.cutoffHertz() > 0.F) {
        look.modulation = toTravel(info(c.parameter), _signal.cutoffHertz());
    }
    return look;
}

std::vector<Rect> Panel::takeDamage() {
    return std::exchange(_damage, {});
}

void Panel::draw(cairo_t* context, const Rect& part) {
    const double u = _layout.unit;
    cairo_save(context);
    cairo_rectangle(context, part.x, part.y, part.width, part.height);
    cairo_clip(context);
    setColour(context, Background);
    cairo_paint(context);
    if (part.meets(_layout.name)) {
        const double size = std::max(15. * u, 9.);
        drawText(context, _layout.name, "Tonewright", {size, Ink, Align::Left, Weight::Bold});
    }
    for (const PanelSection& section : _layout.sections) {
        if (part.meets(section.area)) {
            fillRoundedRect(context, section.area, 6. * u, Surface);
            drawText(context, section.title, titleOf(section.section),
                     {std::max(9.5 * u, 6.5), accentOf(section.section).mixed(DimInk, 0.35), Align::Left,
                      Weight::Bold});
        }
    }
    for (std::size_t i = 0; i < _layout.controls.size(); ++i) {
        if (part.meets(_layout.controls[i].area.inset(-2.))) {
            drawControl(context, _layout.controls[i], lookOf(i), u);
        }
    }
    if (part.meets(displayArea())) {
        _signal.draw(context, _layout, _values);
    }
    if (_menu.isOpen() && part.meets(_menu.area())) {
        _menu.draw(context);
    }
    cairo_restore(context);
}

} // namespace tonewright::effect

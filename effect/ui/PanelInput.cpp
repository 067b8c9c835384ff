// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What pointer and keyboard do to the panel.

#include "Panel.hpp"
#include "effect/dsp/Presets.hpp"

#include <cmath>

namespace tonewright::effect {
namespace {

constexpr double DragPixels = 180.; // of a design pixel, for the whole travel
constexpr double FineFactor = 0.1;
constexpr double WheelStep = 0.02;
constexpr double KeyStep = 0.01;
constexpr double DoubleClickSeconds = 0.35;

bool hasSteps(const ParameterInfo& p) noexcept {
    return p.curve == Curve::Integer || p.curve == Curve::Choice || p.curve == Curve::Toggle;
}

} // namespace

void Panel::setFocus(std::optional<std::size_t> control) {
    if (focus_ != control) {
        endEdit(true);
        damageControl(focus_);
        focus_ = control;
        damageControl(focus_);
    }
}

void Panel::setHover(std::optional<std::size_t> control) {
    if (hover_ != control) {
        damageControl(hover_);
        hover_ = control;
        damageControl(hover_);
    }
}

void Panel::setValue(Parameter parameter, float value) {
    const float inside = sanitised(info(parameter), value);
    if (values_[index(parameter)] == inside) {
        return;
    }
    values_[index(parameter)] = inside;
    actions_.write(parameter, inside);
    damageParameter(parameter);
}

void Panel::step(const PanelControl& control, int steps, bool fine) {
    const ParameterInfo& p = info(control.parameter);
    const float value = values_[index(control.parameter)];
    if (hasSteps(p)) {
        setValue(control.parameter, value + static_cast<float>(steps));
    } else {
        const double by = steps * (fine ? KeyStep * FineFactor : KeyStep);
        setValue(control.parameter, fromTravel(p, toTravel(p, value) + static_cast<float>(by)));
    }
}

void Panel::pointerMoved(Point point, KeyModifiers modifiers) {
    if (menu_.isOpen()) {
        if (menu_.highlight(menu_.itemAt(point))) {
            damage(menu_.area());
        }
        return;
    }
    if (!drag_) {
        setHover(layout_.controlAt(point));
        return;
    }
    const Parameter parameter = layout_.controls[drag_->control].parameter;
    const double pixels = drag_->last.y - point.y + 0.3 * (point.x - drag_->last.x);
    const double range = DragPixels * std::max(layout_.unit, 0.6);
    drag_->last = point;
    drag_->travel = std::clamp(drag_->travel + pixels / range * (modifiers.fine() ? FineFactor : 1.), 0., 1.);
    setValue(parameter, fromTravel(info(parameter), static_cast<float>(drag_->travel)));
}

void Panel::pointerPressed(Point point, double seconds) {
    if (menu_.isOpen()) {
        const auto item = menu_.itemAt(point);
        item ? chooseMenuItem(*item) : closeMenu();
        return;
    }
    const auto hit = layout_.controlAt(point);
    setHover(hit);
    setFocus(hit);
    if (!hit) {
        return;
    }
    const bool twice = lastClicked_ == hit && seconds - lastClickSeconds_ < DoubleClickSeconds;
    lastClicked_ = twice ? std::nullopt : hit;
    lastClickSeconds_ = seconds;
    const PanelControl& control = layout_.controls[*hit];
    switch (control.kind) {
    case ControlKind::Knob:
        endEdit(false);
        actions_.touch(control.parameter, true);
        if (twice) {
            setValue(control.parameter, info(control.parameter).defaultValue);
        }
        drag_ =
            Drag{*hit, point,
                 static_cast<double>(toTravel(info(control.parameter), values_[index(control.parameter)]))};
        break;
    case ControlKind::Selector:
    case ControlKind::PresetMenu:
        openMenu(*hit);
        return;
    default:
        pressed_ = hit;
        break;
    }
    damageControl(hit);
}

void Panel::pointerReleased(Point point) {
    endDrag();
    if (pressed_) {
        const std::size_t button = *pressed_;
        pressed_.reset();
        damageControl(button);
        if (layout_.controls[button].area.contains(point)) {
            activate(button);
        }
    }
}

void Panel::endDrag() {
    if (drag_) {
        const std::size_t control = drag_->control;
        drag_.reset();
        actions_.touch(layout_.controls[control].parameter, false);
        damageControl(control);
    }
}

void Panel::pointerLeft() {
    if (!drag_) {
        setHover(std::nullopt);
    }
}

void Panel::wheel(Point point, int steps, KeyModifiers modifiers) {
    if (menu_.isOpen()) {
        menu_.move(-steps);
        damage(menu_.area());
        return;
    }
    const auto hit = layout_.controlAt(point);
    if (!hit || drag_) {
        return;
    }
    const PanelControl& control = layout_.controls[*hit];
    const ParameterInfo& p = info(control.parameter);
    switch (control.kind) {
    case ControlKind::Knob:
        if (hasSteps(p)) {
            step(control, steps, false);
        } else {
            const double by = steps * WheelStep * (modifiers.fine() ? FineFactor : 1.);
            setValue(control.parameter,
                     fromTravel(p, toTravel(p, values_[index(control.parameter)]) + static_cast<float>(by)));
        }
        break;
    case ControlKind::Selector: // a list reads downwards
        setValue(control.parameter, values_[index(control.parameter)] - static_cast<float>(steps));
        break;
    case ControlKind::Power:
        break;
    default:
        stepPreset(-steps);
        break;
    }
}

void Panel::activate(std::size_t control) {
    const PanelControl& c = layout_.controls[control];
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
        setValue(c.parameter, values_[index(c.parameter)] > 0.5F ? 0.F : 1.F);
        break;
    case ControlKind::Knob:
        beginEdit({});
        break;
    }
}

void Panel::openMenu(std::size_t control) {
    const PanelControl& c = layout_.controls[control];
    std::vector<std::string> items;
    std::optional<std::size_t> current;
    if (c.kind == ControlKind::PresetMenu) {
        for (const Preset& preset : factoryPresets()) {
            items.emplace_back(preset.name);
        }
        current = matchingPreset(values_);
    } else {
        for (const auto choice : info(c.parameter).choices) {
            items.emplace_back(choice);
        }
        current = static_cast<std::size_t>(values_[index(c.parameter)]);
    }
    menuOwner_ = control;
    menu_.open(c.area, layout_.window, layout_.unit, std::move(items), current);
    damage(menu_.area());
    damageControl(control);
}

void Panel::closeMenu() {
    damage(menu_.area());
    damageControl(menuOwner_);
    menu_.close();
}

void Panel::chooseMenuItem(std::size_t item) {
    const PanelControl& owner = layout_.controls[menuOwner_];
    closeMenu();
    if (owner.kind == ControlKind::PresetMenu) {
        applyPreset(item);
    } else {
        setValue(owner.parameter, static_cast<float>(item));
    }
}

void Panel::stepPreset(int by) {
    const int count = static_cast<int>(factoryPresets().size());
    const int from = static_cast<int>(matchingPreset(values_).value_or(lastPreset_));
    applyPreset(static_cast<std::size_t>(((from + by) % count + count) % count));
}

void Panel::applyPreset(std::size_t preset) {
    endEdit(false);
    lastPreset_ = preset;
    const ParameterValues& wanted = factoryPresets()[preset].values;
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        if (i != index(Parameter::Enabled)) {
            setValue(static_cast<Parameter>(i), wanted[i]);
        }
    }
    damage(layout_.window);
}

void Panel::beginEdit(std::string text) {
    edit_ = std::move(text);
    damageControl(focus_);
}

void Panel::endEdit(bool keep) {
    if (!edit_) {
        return;
    }
    const std::string text = std::move(*edit_);
    edit_.reset();
    if (focus_) {
        const Parameter parameter = layout_.controls[*focus_].parameter;
        if (const auto value = keep ? parseValue(info(parameter), text) : std::nullopt) {
            setValue(parameter, *value);
        }
    }
    damageControl(focus_);
}

bool Panel::menuKey(Key key) {
    switch (key) {
    case Key::Up:
    case Key::Left:
        menu_.move(-1);
        break;
    case Key::Down:
    case Key::Right:
        menu_.move(1);
        break;
    case Key::Home:
        menu_.highlight(0);
        break;
    case Key::End:
        menu_.highlight(0);
        menu_.move(-1);
        break;
    case Key::Enter:
        if (const auto item = menu_.highlighted()) {
            chooseMenuItem(*item);
        }
        return true;
    default:
        closeMenu();
        return true;
    }
    damage(menu_.area());
    return true;
}

bool Panel::editKey(Key key, std::string_view text) {
    switch (key) {
    case Key::Character:
        if (edit_->size() + text.size() <= 10) {
            *edit_ += text;
        }
        break;
    case Key::Backspace:
        if (!edit_->empty()) {
            edit_->pop_back();
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
    damageControl(focus_);
    return true;
}

bool Panel::knobKey(Key key, KeyModifiers modifiers, std::string_view text) {
    const PanelControl& control = layout_.controls[*focus_];
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
        activate(*focus_);
        return true;
    case Key::Character:
        if (control.kind == ControlKind::Knob && !text.empty() && text != " ") {
            beginEdit(std::string{text});
            return true;
        }
        if (control.kind != ControlKind::Knob && text == " ") {
            activate(*focus_);
            return true;
        }
        return false;
    default:
        return false;
    }
}

bool Panel::key(Key key, KeyModifiers modifiers, std::string_view text) {
    if (menu_.isOpen()) {
        return menuKey(key);
    }
    if (edit_ && editKey(key, text)) {
        return true;
    }
    if (key == Key::Tab) {
        const std::size_t count = layout_.controls.size();
        const std::size_t from = focus_ ? *focus_ : (modifiers.shift ? 0 : count - 1);
        setFocus((from + (modifiers.shift ? count - 1 : 1)) % count);
        return true;
    }
    if (key == Key::Escape) {
        setFocus(std::nullopt);
        actions_.releaseKeyboard();
        return true;
    }
    return focus_ && knobKey(key, modifiers, text);
}

void Panel::keyboardArrived(bool arrived) {
    hasKeyboard_ = arrived;
    if (!arrived) {
        endEdit(true);
        if (menu_.isOpen()) {
            closeMenu();
        }
    }
    damageControl(focus_);
}

} // namespace tonewright::effect

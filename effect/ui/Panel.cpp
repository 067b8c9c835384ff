// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Panel.hpp"

#include "Theme.hpp"
#include "effect/dsp/Presets.hpp"

#include <utility>

namespace tonewright::effect {

Panel::Panel(PanelActions actions)
    : actions_{std::move(actions)}
    , values_{defaultValues()} {
    resize(NaturalWidth, NaturalHeight);
}

void Panel::resize(int width, int height) {
    endDrag();
    edit_.reset();
    menu_.close();
    pressed_.reset();
    lastClicked_.reset();
    hover_.reset();
    layout_ = layOut(width, height); // the order of controls, and so the focus, stays
    for (std::size_t i = 0; i < layout_.controls.size(); ++i) {
        if (layout_.controls[i].kind == ControlKind::Knob &&
            layout_.controls[i].parameter == Parameter::Cutoff) {
            cutoffKnob_ = i;
        }
    }
    damage(layout_.window);
    signal_.forgetBackdrop();
    signal_.invalidate();
}

void Panel::showValue(Parameter parameter, float value) {
    if (drag_ && layout_.controls[drag_->control].parameter == parameter) {
        return; // an echo of what the hand is doing, late
    }
    const float inside = sanitised(info(parameter), value);
    if (values_[index(parameter)] != inside) {
        values_[index(parameter)] = inside;
        if (const auto preset = matchingPreset(values_)) {
            lastPreset_ = *preset;
        }
        damageParameter(parameter);
    }
}

void Panel::showFrame(const DisplayFrame& frame) {
    signal_.push(frame);
}

void Panel::advance(double seconds) {
    if (signal_.advance(seconds)) {
        damage(displayArea());
        if (signal_.cutoffHertz() != shownCutoff_) {
            shownCutoff_ = signal_.cutoffHertz();
            damageControl(cutoffKnob_);
        }
    }
}

Rect Panel::displayArea() const noexcept {
    return layout_.inputMeter.united(layout_.outputMeter).united(layout_.display).snapped();
}

void Panel::damage(const Rect& rect) {
    Rect whole = rect;
    // A rectangle that joins two others may then meet a third.
    for (auto other = damage_.begin(); other != damage_.end();) {
        if (other->meets(whole)) {
            whole = whole.united(*other);
            damage_.erase(other);
            other = damage_.begin();
        } else {
            ++other;
        }
    }
    if (!whole.empty()) {
        damage_.push_back(whole);
    }
}

void Panel::damageControl(std::optional<std::size_t> control) {
    if (control) {
        damage(layout_.controls[*control].area.inset(-2.).snapped());
    }
}

void Panel::damageParameter(Parameter parameter) {
    for (std::size_t i = 0; i < layout_.controls.size(); ++i) {
        const PanelControl& control = layout_.controls[i];
        const bool shows = control.kind == ControlKind::Knob || control.kind == ControlKind::Selector ||
                           control.kind == ControlKind::Power;
        if ((shows && control.parameter == parameter) || control.kind == ControlKind::PresetMenu) {
            damageControl(i);
        }
    }
    if (parameter == Parameter::Enabled) {
        damage(layout_.window); // everything pales or shines
    }
    signal_.invalidate();
}

std::string Panel::presetName() const {
    const auto preset = matchingPreset(values_);
    std::string name{factoryPresets()[preset.value_or(lastPreset_)].name};
    return preset ? name : name + " (edited)";
}

ControlLook Panel::lookOf(std::size_t control) const {
    const PanelControl& c = layout_.controls[control];
    ControlLook look;
    look.value = values_[index(c.parameter)];
    look.focused = hasKeyboard_ && focus_ == control;
    look.hovered = hover_ == control;
    look.active = (drag_ && drag_->control == control) || (menu_.isOpen() && menuOwner_ == control) ||
                  pressed_ == control;
    look.enabled = values_[index(Parameter::Enabled)] > 0.5F;
    if (c.kind == ControlKind::PresetMenu) {
        look.text = presetName();
        look.enabled = true;
    } else if (c.kind == ControlKind::Knob || c.kind == ControlKind::Selector) {
        look.text = valueText(info(c.parameter), look.value);
    }
    if (edit_ && focus_ == control) {
        look.text = *edit_ + "_";
        look.active = true;
    }
    if (c.kind == ControlKind::Knob && c.parameter == Parameter::Cutoff && signal_.cutoffHertz() > 0.F) {
        look.modulation = toTravel(info(c.parameter), signal_.cutoffHertz());
    }
    return look;
}

std::vector<Rect> Panel::takeDamage() {
    return std::exchange(damage_, {});
}

void Panel::draw(cairo_t* context, const Rect& part) {
    const double u = layout_.unit;
    cairo_save(context);
    cairo_rectangle(context, part.x, part.y, part.width, part.height);
    cairo_clip(context);
    setColour(context, Background);
    cairo_paint(context);
    if (part.meets(layout_.name)) {
        const double size = std::max(15. * u, 9.);
        drawText(context, layout_.name, "Tonewright", {size, Ink, Align::Left, Weight::Bold});
    }
    for (const PanelSection& section : layout_.sections) {
        if (part.meets(section.area)) {
            fillRoundedRect(context, section.area, 6. * u, Surface);
            drawText(context, section.title, titleOf(section.section),
                     {std::max(9.5 * u, 6.5), accentOf(section.section).mixed(DimInk, 0.35), Align::Left,
                      Weight::Bold});
        }
    }
    for (std::size_t i = 0; i < layout_.controls.size(); ++i) {
        if (part.meets(layout_.controls[i].area.inset(-2.))) {
            drawControl(context, layout_.controls[i], lookOf(i), u);
        }
    }
    if (part.meets(displayArea())) {
        signal_.draw(context, layout_, values_);
    }
    if (menu_.isOpen() && part.meets(menu_.area())) {
        menu_.draw(context);
    }
    cairo_restore(context);
}

} // namespace tonewright::effect

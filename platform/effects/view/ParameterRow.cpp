// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/ParameterRow.hpp"

#include "platform/effects/view/choiceNames.hpp"
#include "platform/effects/view/ratioSlider.hpp"

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace platform {
namespace {

constexpr double SliderSteps = 100;

std::string textOf(const AUParameter& parameter, float value) {
    for (const auto& [named, name] : parameter.valueStrings) {
        if (std::abs(named - value) <= 1e-6F * std::max(1.0F, std::abs(named))) return name;
    }
    std::array<char, 64> text{};
    const int decimals = parameter.isInteger ? 0 : std::abs(value) < 10 ? 2 : std::abs(value) < 100 ? 1 : 0;
    (void)std::snprintf(text.data(), text.size(), "%.*f", decimals, static_cast<double>(value));
    return parameter.unitName.empty() ? text.data() : std::string(text.data()) + " " + parameter.unitName;
}

bool isRatio(const AUParameter& parameter) {
    return parameter.isLogarithmic && parameter.minValue > 0 && parameter.maxValue > parameter.minValue;
}

} // namespace

void ParameterRow::set(float value) {
    if (isRefreshing) return;
    unit->setParameterValue(parameter.address, value);
    refresh();
}

void ParameterRow::refresh() {
    const float value = unit->parameterValue(parameter.address);
    if (value == shown) return;
    shown = value;
    isRefreshing = true;
    if (GTK_IS_SWITCH(control)) {
        gtk_switch_set_active(GTK_SWITCH(control), value > 0 ? TRUE : FALSE);
    } else if (GTK_IS_DROP_DOWN(control)) {
        gtk_drop_down_set_selected(GTK_DROP_DOWN(control), choiceFor(value));
    } else if (GTK_IS_RANGE(control)) {
        gtk_range_set_value(GTK_RANGE(control), value);
    } else {
        gtk_level_bar_set_value(GTK_LEVEL_BAR(control),
                                std::max(0.0, static_cast<double>(value) - levelBase()));
    }
    isRefreshing = false;
    const std::string text = textOf(parameter, value);
    if (valueLabel != nullptr) gtk_label_set_text(GTK_LABEL(valueLabel), text.c_str());
    if (GTK_IS_DROP_DOWN(control)) nameChoiceBox(control, parameter.displayName, text);
    if (GTK_IS_LEVEL_BAR(control)) {
        // Replaces the bounds that the level bar reports, which begin at 0.
        gtk_accessible_update_property(GTK_ACCESSIBLE(control), GTK_ACCESSIBLE_PROPERTY_VALUE_MIN,
                                       static_cast<double>(parameter.minValue),
                                       GTK_ACCESSIBLE_PROPERTY_VALUE_MAX,
                                       static_cast<double>(parameter.maxValue),
                                       GTK_ACCESSIBLE_PROPERTY_VALUE_NOW, static_cast<double>(value), -1);
    }
    if (valueLabel != nullptr) {
        // GTK 4.8 sends an accessibility event for a change of the description, but not for a change of
        // the value.
        gtk_accessible_update_property(GTK_ACCESSIBLE(control), GTK_ACCESSIBLE_PROPERTY_VALUE_TEXT,
                                       text.c_str(), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, text.c_str(), -1);
    }
}

guint ParameterRow::choiceFor(float value) const {
    const auto nearest = std::min_element(parameter.valueStrings.begin(), parameter.valueStrings.end(),
                                          [value](const auto& a, const auto& b) {
                                              return std::abs(a.value - value) < std::abs(b.value - value);
                                          });
    return static_cast<guint>(nearest - parameter.valueStrings.begin());
}

void makeControl(ParameterRow& row) {
    const AUParameter& parameter = row.parameter;
    if (!parameter.isWritable) {
        const double top = std::max(parameter.maxValue, parameter.minValue) - row.levelBase();
        row.control = gtk_level_bar_new_for_interval(0, top > 0 ? top : 1);
        for (const char* colour :
             {GTK_LEVEL_BAR_OFFSET_LOW, GTK_LEVEL_BAR_OFFSET_HIGH, GTK_LEVEL_BAR_OFFSET_FULL}) {
            gtk_level_bar_remove_offset_value(GTK_LEVEL_BAR(row.control), colour);
        }
        gtk_widget_set_valign(row.control, GTK_ALIGN_CENTER);
    } else if (parameter.isToggle) {
        row.control = gtk_switch_new();
        gtk_widget_set_halign(row.control, GTK_ALIGN_START);
        g_signal_connect(row.control, "notify::active",
                         G_CALLBACK(+[](GtkSwitch* control, GParamSpec*, ParameterRow* self) {
                             const AUParameter& p = self->parameter;
                             self->set(gtk_switch_get_active(control) != FALSE ? p.maxValue : p.minValue);
                         }),
                         &row);
    } else if (parameter.isEnumeration && !parameter.valueStrings.empty()) {
        std::vector<const char*> names;
        for (const auto& named : parameter.valueStrings) names.push_back(named.name.c_str());
        names.push_back(nullptr);
        row.control = gtk_drop_down_new_from_strings(names.data());
        nameItemsWhenOpened(row.control);
        g_signal_connect(row.control, "notify::selected",
                         G_CALLBACK(+[](GtkDropDown* control, GParamSpec*, ParameterRow* self) {
                             const guint choice = gtk_drop_down_get_selected(control);
                             if (choice < self->parameter.valueStrings.size()) {
                                 self->set(self->parameter.valueStrings[choice].value);
                             }
                         }),
                         &row);
    } else {
        const double steps = parameter.isInteger
                                 ? std::clamp<double>(parameter.maxValue - parameter.minValue, 1, 1e6)
                                 : SliderSteps;
        if (isRatio(parameter)) {
            const RatioSlider slider = makeRatioSlider(parameter.minValue, parameter.maxValue, steps);
            row.widget = slider.widget;
            row.control = slider.control;
        } else {
            const double low = parameter.minValue, high = std::max(parameter.maxValue, parameter.minValue);
            row.control =
                gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, low, high > low ? high : low + 1,
                                         (high > low ? high - low : 1) / steps);
            gtk_range_set_round_digits(GTK_RANGE(row.control), -1);
            gtk_scale_set_draw_value(GTK_SCALE(row.control), FALSE);
        }
        g_signal_connect(row.control, "value-changed", G_CALLBACK(+[](GtkRange* control, ParameterRow* self) {
                             const double value = gtk_range_get_value(control);
                             self->set(
                                 static_cast<float>(self->parameter.isInteger ? std::round(value) : value));
                         }),
                         &row);
    }
    if (row.widget == nullptr) row.widget = row.control;
    if (!GTK_IS_SWITCH(row.control) && !GTK_IS_DROP_DOWN(row.control)) {
        gtk_widget_set_hexpand(row.widget, TRUE);
        gtk_widget_set_size_request(row.widget, 120, -1);
    }
}

} // namespace platform

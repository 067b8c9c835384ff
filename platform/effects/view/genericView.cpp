// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/genericView.hpp"

#include "platform/effects/view/ratioSlider.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <utility>

namespace platform {
namespace {

constexpr unsigned RefreshMilliseconds = 100;
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

// Names what a choice box is made of: the button in it is what has the focus, the list what opens. The choice
// is part of the button's name, since the button is all that is read.
void nameChoiceBox(GtkWidget* widget, const std::string& name, const std::string& choice) {
    const auto label = [](GtkWidget* part, const std::string& text) {
        gtk_accessible_update_property(GTK_ACCESSIBLE(part), GTK_ACCESSIBLE_PROPERTY_LABEL, text.c_str(), -1);
    };
    if (GTK_IS_TOGGLE_BUTTON(widget)) label(widget, name + ": " + choice);
    if (GTK_IS_DROP_DOWN(widget) || GTK_IS_LIST_VIEW(widget)) label(widget, name);
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        nameChoiceBox(child, name, choice);
    }
}

// The toolkit gives the items of an open list no names.
void nameItems(GtkWidget* list) {
    for (GtkWidget* item = gtk_widget_get_first_child(list); item != nullptr;
         item = gtk_widget_get_next_sibling(item)) {
        GtkWidget* part = item;
        while (part != nullptr && !GTK_IS_LABEL(part)) part = gtk_widget_get_first_child(part);
        if (part != nullptr) {
            gtk_accessible_update_property(GTK_ACCESSIBLE(item), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                           gtk_label_get_text(GTK_LABEL(part)), -1);
        }
    }
}

void nameItemsWhenOpened(GtkWidget* widget) {
    if (GTK_IS_LIST_VIEW(widget)) {
        g_signal_connect(widget, "map", G_CALLBACK(+[](GtkWidget* list, gpointer) { nameItems(list); }),
                         nullptr);
    }
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        nameItemsWhenOpened(child);
    }
}

// One row: the controls of one parameter. Owned by the control's widget.
struct Row {
    std::shared_ptr<AUAudioUnit> unit;
    AUParameter parameter;
    GtkWidget* widget = nullptr;  // the control, or what it is in
    GtkWidget* control = nullptr; // a level bar for a value that only shows
    GtkWidget* valueLabel = nullptr;
    float shown = std::numeric_limits<float>::quiet_NaN();
    bool isRefreshing = false; // what the control reports meanwhile is not the user's doing

    void set(float value) {
        if (isRefreshing) return;
        unit->setParameterValue(parameter.address, value);
        refresh();
    }

    void refresh() {
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
            // After its own, which begin at 0.
            gtk_accessible_update_property(GTK_ACCESSIBLE(control), GTK_ACCESSIBLE_PROPERTY_VALUE_MIN,
                                           static_cast<double>(parameter.minValue),
                                           GTK_ACCESSIBLE_PROPERTY_VALUE_MAX,
                                           static_cast<double>(parameter.maxValue),
                                           GTK_ACCESSIBLE_PROPERTY_VALUE_NOW, static_cast<double>(value), -1);
        }
        if (valueLabel != nullptr) {
            // A change of the value alone sends no event in GTK 4.8; a change of the description does.
            gtk_accessible_update_property(GTK_ACCESSIBLE(control), GTK_ACCESSIBLE_PROPERTY_VALUE_TEXT,
                                           text.c_str(), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, text.c_str(),
                                           -1);
        }
    }

    // Returns the value that a level bar shows as nothing; the toolkit's has no values below 0.
    [[nodiscard]] double levelBase() const { return std::min(0.F, parameter.minValue); }

    [[nodiscard]] guint choiceFor(float value) const {
        const auto nearest =
            std::min_element(parameter.valueStrings.begin(), parameter.valueStrings.end(),
                             [value](const auto& a, const auto& b) {
                                 return std::abs(a.value - value) < std::abs(b.value - value);
                             });
        return static_cast<guint>(nearest - parameter.valueStrings.begin());
    }
};

void makeControl(Row& row) {
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
                         G_CALLBACK(+[](GtkSwitch* control, GParamSpec*, Row* self) {
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
                         G_CALLBACK(+[](GtkDropDown* control, GParamSpec*, Row* self) {
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
        g_signal_connect(row.control, "value-changed", G_CALLBACK(+[](GtkRange* control, Row* self) {
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

class GenericInterface {
  public:
    GenericInterface(std::shared_ptr<AUAudioUnit> unit, const std::string& name, const std::string& note)
        : _unit(std::move(unit))
        , _grid(gtk_grid_new()) {
        gtk_grid_set_row_spacing(GTK_GRID(_grid), 6);
        gtk_grid_set_column_spacing(GTK_GRID(_grid), 12);
        for (const auto setMargin : {gtk_widget_set_margin_top, gtk_widget_set_margin_bottom,
                                     gtk_widget_set_margin_start, gtk_widget_set_margin_end}) {
            setMargin(_grid, 12);
        }
        addTitle(name);
        if (!note.empty()) addNote(note);
        addPresets();
        for (AUParameter& parameter : _unit->parameters()) {
            if (!parameter.isHidden) addRow(std::move(parameter));
        }
    }

    ~GenericInterface() { setRefreshing(false); }
    GenericInterface(const GenericInterface&) = delete;
    GenericInterface& operator=(const GenericInterface&) = delete;

    [[nodiscard]] GtkWidget* grid() const noexcept { return _grid; }

    void setRefreshing(bool isOn) {
        if (!isOn && _timer != 0) g_source_remove(std::exchange(_timer, 0));
        if (!isOn || _timer != 0) return;
        refresh();
        _timer = g_timeout_add(
            RefreshMilliseconds,
            [](gpointer self) -> gboolean {
                static_cast<GenericInterface*>(self)->refresh();
                return G_SOURCE_CONTINUE;
            },
            this);
    }

  private:
    void addTitle(const std::string& name) {
        GtkWidget* title = gtk_label_new(name.c_str());
        gtk_widget_add_css_class(title, "heading");
        gtk_widget_set_halign(title, GTK_ALIGN_START);
        gtk_label_set_ellipsize(GTK_LABEL(title), PANGO_ELLIPSIZE_END);
        gtk_grid_attach(GTK_GRID(_grid), title, 0, _rowCount++, 3, 1);
    }

    void addNote(const std::string& note) {
        GtkWidget* label = gtk_label_new(note.c_str());
        gtk_widget_set_halign(label, GTK_ALIGN_START);
        gtk_label_set_wrap(GTK_LABEL(label), TRUE);
        gtk_label_set_xalign(GTK_LABEL(label), 0);
        gtk_grid_attach(GTK_GRID(_grid), label, 0, _rowCount++, 3, 1);
    }

    void addPresets() {
        const auto presets = _unit->factoryPresets();
        if (!presets) return;
        std::vector<const char*> names{"Preset"};
        for (const AUAudioUnitPreset& preset : *presets) names.push_back(preset.name().c_str());
        names.push_back(nullptr);
        GtkWidget* menu = gtk_drop_down_new_from_strings(names.data());
        nameChoiceBox(menu, names.front(), names.front());
        nameItemsWhenOpened(menu);
        g_signal_connect(menu, "notify::selected",
                         G_CALLBACK(+[](GtkDropDown* control, GParamSpec*, GenericInterface* self) {
                             const guint choice = gtk_drop_down_get_selected(control);
                             auto* item = GTK_STRING_OBJECT(gtk_drop_down_get_selected_item(control));
                             if (item != nullptr) {
                                 nameChoiceBox(GTK_WIDGET(control), "Preset",
                                               gtk_string_object_get_string(item));
                             }
                             const auto known = self->_unit->factoryPresets();
                             if (choice == 0 || !known || choice > known->size()) return;
                             self->_unit->setCurrentPreset((*known)[choice - 1]);
                             self->refresh();
                         }),
                         this);
        gtk_grid_attach(GTK_GRID(_grid), menu, 0, _rowCount++, 3, 1);
    }

    void addRow(AUParameter parameter) {
        auto row = std::make_unique<Row>();
        row->unit = _unit;
        row->parameter = std::move(parameter);
        const char* name = row->parameter.displayName.c_str();
        GtkWidget* label = gtk_label_new(name);
        gtk_widget_set_halign(label, GTK_ALIGN_START);
        gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
        gtk_label_set_width_chars(GTK_LABEL(label), 12);
        gtk_label_set_xalign(GTK_LABEL(label), 0);
        gtk_grid_attach(GTK_GRID(_grid), label, 0, _rowCount, 1, 1);
        makeControl(*row);
        gtk_accessible_update_property(GTK_ACCESSIBLE(row->control), GTK_ACCESSIBLE_PROPERTY_LABEL, name, -1);
        gtk_grid_attach(GTK_GRID(_grid), row->widget, 1, _rowCount, 1, 1);
        if (!GTK_IS_SWITCH(row->control) && !GTK_IS_DROP_DOWN(row->control)) {
            row->valueLabel = gtk_label_new(nullptr);
            gtk_widget_set_halign(row->valueLabel, GTK_ALIGN_END);
            gtk_label_set_width_chars(GTK_LABEL(row->valueLabel), 9);
            gtk_label_set_xalign(GTK_LABEL(row->valueLabel), 1);
            gtk_grid_attach(GTK_GRID(_grid), row->valueLabel, 2, _rowCount, 1, 1);
        }
        ++_rowCount;
        row->refresh();
        _rows.push_back(std::move(row));
    }

    void refresh() {
        for (const auto& row : _rows) row->refresh();
    }

    const std::shared_ptr<AUAudioUnit> _unit;
    GtkWidget* const _grid; // the widget tree owns this object
    std::vector<std::unique_ptr<Row>> _rows;
    int _rowCount = 0;
    guint _timer = 0;
};

} // namespace

GtkWidget* makeGenericInterface(std::shared_ptr<AUAudioUnit> unit, const std::string& name,
                                const std::string& note) {
    auto interface = std::make_unique<GenericInterface>(std::move(unit), name, note);
    GtkWidget* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), interface->grid());
    gtk_accessible_update_property(GTK_ACCESSIBLE(scroller), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
    gtk_widget_add_css_class(scroller, "background");
    const auto on = [&](const char* signal, GCallback call) {
        g_signal_connect(scroller, signal, call, interface.get());
    };
    on("map", G_CALLBACK(+[](GtkWidget*, GenericInterface* self) { self->setRefreshing(true); }));
    on("unmap", G_CALLBACK(+[](GtkWidget*, GenericInterface* self) { self->setRefreshing(false); }));
    g_object_set_data_full(G_OBJECT(scroller), "generic-interface", interface.release(),
                           [](gpointer object) { delete static_cast<GenericInterface*>(object); });
    return scroller;
}

} // namespace platform

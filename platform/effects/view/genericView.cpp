// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/genericView.hpp"

#include "platform/effects/view/ParameterRow.hpp"
#include "platform/effects/view/choiceNames.hpp"
#include "platform/effects/view/margins.hpp"
#include "platform/foundation/translated.hpp"

#include <memory>
#include <utility>
#include <vector>

namespace platform {
namespace {

constexpr unsigned RefreshMilliseconds = 100;

class GenericInterface {
  public:
    GenericInterface(std::shared_ptr<AUAudioUnit> unit, const std::string& name, const std::string& note)
        : _unit(std::move(unit))
        , _grid(gtk_grid_new()) {
        gtk_grid_set_row_spacing(GTK_GRID(_grid), 6);
        gtk_grid_set_column_spacing(GTK_GRID(_grid), 12);
        lv2::setMargins(_grid, 12);
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
        std::vector<const char*> names{translated("Preset")};
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
                                 nameChoiceBox(GTK_WIDGET(control), translated("Preset"),
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
        auto row = std::make_unique<ParameterRow>();
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
    std::vector<std::unique_ptr<ParameterRow>> _rows;
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

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/ExternalPanel.hpp"

#include "platform/effects/outside/OutsideInterface.hpp"
#include "platform/effects/view/displayScale.hpp"
#include "platform/effects/view/genericView.hpp"
#include "platform/effects/view/margins.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/translated.hpp"

#include <utility>

namespace platform::lv2 {
namespace {

constexpr unsigned UpdateMilliseconds = 33;

class ExternalPanel {
  public:
    using State = EffectInterface::State;

    ExternalPanel(std::shared_ptr<AudioUnit> unit, Interface interface)
        : _box(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0))
        , _status(
              GTK_LABEL(g_object_new(GTK_TYPE_LABEL, "accessible-role", GTK_ACCESSIBLE_ROLE_STATUS, nullptr)))
        , _unit(std::move(unit))
        , _interface(std::move(interface)) {
        GtkWidget* list =
            makeGenericInterface(_unit, _unit->lv2Processor().plugin().name,
                                 translated("The effect’s own interface opens in a window of its own."));
        gtk_widget_set_vexpand(list, TRUE);
        gtk_widget_set_hexpand(list, TRUE);
        gtk_box_append(GTK_BOX(_box), list);
        gtk_widget_add_css_class(_box, "background");
        addButton();
        g_object_set_data_full(G_OBJECT(_box), "external-panel", this,
                               [](gpointer panel) { delete static_cast<ExternalPanel*>(panel); });
    }
    ExternalPanel(const ExternalPanel&) = delete;
    ExternalPanel& operator=(const ExternalPanel&) = delete;

    [[nodiscard]] GtkWidget* widget() const noexcept { return _box; }

  private:
    ~ExternalPanel() { stopUpdating(); }

    void addButton() {
        GtkWidget* row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
        GtkWidget* button = gtk_button_new_with_mnemonic(translated("Show _Window"));
        g_signal_connect_swapped(button, "clicked", G_CALLBACK(+[](ExternalPanel* self) { self->show(); }),
                                 this);
        gtk_label_set_wrap(_status, TRUE);
        gtk_label_set_xalign(_status, 0);
        setMargins(row, 12);
        gtk_box_append(GTK_BOX(row), button);
        gtk_box_append(GTK_BOX(row), GTK_WIDGET(_status));
        gtk_box_append(GTK_BOX(_box), row);
    }

    // Opens the interface, or raises its window.
    void show() {
        if (_opened != nullptr) {
            if (_state == State::Open) _opened->setVisible(true);
            return;
        }
        if (!_unit->claimInterface()) {
            return say(translated("The effect’s own interface is already open."));
        }
        GdkDisplay* display = gdk_display_get_default();
        const InterfacePlace place{.window = 0, .scale = scaleOf(display), .takeSize = nullptr};
        auto started = OutsideInterface::start(_unit, _interface, place, gdk_display_get_name(display));
        if (!started) {
            warn(started.error().localizedDescription());
            return say(translated("The effect’s own interface could not be opened."));
        }
        say("");
        _state = State::Opening;
        _opened = std::move(started.value());
        _timer = g_timeout_add(
            UpdateMilliseconds,
            [](gpointer self) -> gboolean {
                static_cast<ExternalPanel*>(self)->update();
                return G_SOURCE_CONTINUE;
            },
            this);
    }

    void update() {
        const State before = std::exchange(_state, _opened->update());
        if (_state == before) return;
        if (_state == State::Open) return _opened->setVisible(true);
        stopUpdating();
        _opened.reset();
        if (_state != State::Closed) say(reasonFor(_state));
    }

    void stopUpdating() {
        if (_timer != 0) g_source_remove(std::exchange(_timer, 0));
    }

    static const char* reasonFor(State state) {
        switch (state) {
        case State::Failed:
            return translated("The effect’s own interface could not be opened.");
        case State::Hung:
            return translated("The effect’s own interface did not answer and was ended.");
        default:
            return translated("The effect’s own interface has ended.");
        }
    }

    void say(const char* text) { gtk_label_set_text(_status, text); }

    GtkWidget* const _box; // owns this object
    GtkLabel* const _status;
    const std::shared_ptr<AudioUnit> _unit;
    const Interface _interface;
    std::unique_ptr<EffectInterface> _opened;
    EffectInterface::State _state = State::Opening; // of _opened
    guint _timer = 0;
};

} // namespace

GtkWidget* makeExternalPanel(std::shared_ptr<AudioUnit> unit, const Interface& interface) {
    return (new ExternalPanel(std::move(unit), interface))->widget(); // owned by its widget
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/InterfacePanel.hpp"

#include "platform/effects/inside/InsideInterface.hpp"
#include "platform/effects/outside/OutsideInterface.hpp"
#include "platform/effects/view/EmbeddedInterface.hpp"
#include "platform/effects/view/X11Socket.hpp"
#include "platform/effects/view/displayScale.hpp"
#include "platform/effects/view/genericView.hpp"
#include "platform/effects/view/margins.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/translated.hpp"

#include <gdk/x11/gdkx.h>
#include <glib-unix.h>
#include <utility>

namespace platform::lv2 {
namespace {

constexpr unsigned LookMilliseconds = 200; // while an interface is created

const char* reasonFor(EffectInterface::State state) {
    switch (state) {
    case EffectInterface::State::Closed:
        return translated("The effect’s own interface has closed its window.");
    case EffectInterface::State::Hung:
        return translated("The effect’s own interface did not answer and was ended.");
    default:
        return translated("The effect’s own interface has ended.");
    }
}

class InterfacePanel {
  public:
    using State = EffectInterface::State;

    InterfacePanel(std::shared_ptr<AudioUnit> unit, Interface interface)
        : _box(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0))
        , _unit(std::move(unit))
        , _interface(std::move(interface)) {
        gtk_widget_add_css_class(_box, "background"); // around the button below the list
        g_object_set_data_full(G_OBJECT(_box), "interface-panel", this,
                               [](gpointer panel) { delete static_cast<InterfacePanel*>(panel); });
    }
    InterfacePanel(const InterfacePanel&) = delete;
    InterfacePanel& operator=(const InterfacePanel&) = delete;

    [[nodiscard]] GtkWidget* widget() const noexcept { return _box; }

    // Calls `opened` at once or later, with Open when the interface is shown, otherwise with Failed or Hung.
    // The unit's interface is claimed.
    void open(std::function<void(State)> opened) {
        GdkDisplay* display = gdk_display_get_default();
        _opened = std::move(opened);
        _socket = X11Socket::make(gdk_display_get_name(display));
        if (!_socket) {
            _unit->releaseInterface();
            warn("The X server accepts no connection for the interface of \"" + name() + "\".");
            return finish(State::Failed);
        }
        if (!_interface.isResizable) _socket->keepWantedSize();
        const InterfacePlace place{.window = _socket->window(),
                                   .scale = scaleOf(display),
                                   .takeSize = [socket = _socket.get()](int width, int height) {
                                       socket->setWantedSize({width, height});
                                   }};
        // An interface of another toolkit always has a process of its own, because its toolkit would
        // conflict with that of the program.
        const bool isOutside = _unit->lv2Processor().isOutside() || _interface.kind != Interface::Kind::X11;
        auto created = isOutside
                           ? OutsideInterface::start(_unit, _interface, place, gdk_display_get_name(display))
                           : InsideInterface::make(_unit, _interface, place);
        if (!created) {
            warn(created.error().localizedDescription());
            return finish(State::Failed);
        }
        _created = std::move(created.value());
        if (_created->connection() >= 0) {
            _news = g_unix_fd_add(
                _created->connection(), G_IO_IN,
                [](int, GIOCondition, gpointer self) -> gboolean {
                    static_cast<InterfacePanel*>(self)->look();
                    return G_SOURCE_CONTINUE;
                },
                this);
            _timer = g_timeout_add(
                LookMilliseconds,
                [](gpointer self) -> gboolean {
                    static_cast<InterfacePanel*>(self)->look();
                    return G_SOURCE_CONTINUE;
                },
                this);
        }
        look();
    }

    void showList(State state) {
        show(makeGenericInterface(_unit, name(), reasonFor(state)));
        GtkWidget* button = gtk_button_new_with_mnemonic(translated("_Open Again"));
        gtk_widget_set_halign(button, GTK_ALIGN_START);
        setMargins(button, 12);
        g_signal_connect_swapped(button, "clicked",
                                 G_CALLBACK(+[](InterfacePanel* self) { self->openAgain(); }), this);
        gtk_box_append(GTK_BOX(_box), button);
    }

  private:
    ~InterfacePanel() {
        stopLooking();
        if (_idle != 0) g_source_remove(_idle);
    }

    [[nodiscard]] std::string name() const { return _unit->lv2Processor().plugin().name; }

    void stopLooking() {
        for (guint* source : {&_news, &_timer}) {
            if (*source != 0) g_source_remove(std::exchange(*source, 0));
        }
    }

    void look() {
        const State state = _created->update();
        if (state == State::Opening) return;
        stopLooking();
        if (state == State::Open) {
            show(makeEmbeddedInterface(std::move(_socket), std::move(_created), name(),
                                       [this](State ended) { replaceSoon(ended); }));
        }
        finish(state);
    }

    void finish(State state) {
        _created.reset(); // before the socket that it is in
        _socket.reset();
        std::exchange(_opened, nullptr)(state);
    }

    void show(GtkWidget* widget) {
        while (GtkWidget* child = gtk_widget_get_first_child(_box)) gtk_box_remove(GTK_BOX(_box), child);
        gtk_widget_set_hexpand(widget, TRUE);
        gtk_widget_set_vexpand(widget, TRUE);
        gtk_box_append(GTK_BOX(_box), widget);
    }

    // Later, because the embedded interface is in the middle of a call.
    void replaceSoon(State ended) {
        _end = ended;
        _idle = g_idle_add(
            [](gpointer panel) -> gboolean {
                auto* self = static_cast<InterfacePanel*>(panel);
                self->_idle = 0;
                self->showList(self->_end);
                return G_SOURCE_REMOVE;
            },
            this);
    }

    void openAgain() {
        if (_opened || !_unit->claimInterface()) return; // it is being opened, here or elsewhere
        open([this](State state) {
            if (state != State::Open) showList(state);
        });
    }

    GtkWidget* const _box; // owns this object
    const std::shared_ptr<AudioUnit> _unit;
    const Interface _interface;
    std::function<void(State)> _opened; // not null while the interface is created
    std::unique_ptr<X11Socket> _socket;
    std::unique_ptr<EffectInterface> _created; // destroyed before the socket that it is in
    State _end = State::Ended;
    guint _news = 0, _timer = 0, _idle = 0;
};

} // namespace

void openInterface(std::shared_ptr<AudioUnit> unit, const Interface& interface,
                   std::function<void(GtkWidget*)> completion) {
    auto* panel = new InterfacePanel(std::move(unit), interface); // owned by its widget
    GtkWidget* widget = panel->widget();
    g_object_ref_sink(widget);
    panel->open([panel, widget, completion = std::move(completion)](EffectInterface::State state) {
        const bool isShown = state == EffectInterface::State::Open || state == EffectInterface::State::Hung;
        if (state == EffectInterface::State::Hung) panel->showList(state);
        completion(isShown ? widget : nullptr);
        g_object_unref(widget);
    });
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/EmbeddedInterface.hpp"

#include "platform/effects/view/KeyboardLoan.hpp"
#include "platform/effects/view/growWindow.hpp"
#include "platform/effects/view/widgetPlaces.hpp"

#include <algorithm>
#include <chrono>
#include <gdk/x11/gdkx.h>
#include <glib-unix.h>
#include <utility>

namespace platform::lv2 {
namespace {

constexpr unsigned VisibleMilliseconds = 33;
constexpr unsigned HiddenMilliseconds = 500; // a hidden interface may still have work to do
constexpr int RingPoints = 4;                // width of the focus ring, for which the interface is clipped
// How long an interface may be without a window after it had one: some create another one.
constexpr auto WindowlessTime = std::chrono::seconds(1);

class EmbeddedInterface {
  public:
    EmbeddedInterface(std::unique_ptr<X11Socket> socket, std::unique_ptr<EffectInterface> interface,
                      InterfaceEnded ended)
        : _scroller(gtk_scrolled_window_new())
        , _area(gtk_drawing_area_new())
        , _socket(std::move(socket))
        , _interface(std::move(interface))
        , _ended(std::move(ended))
        , _loan(_area, _socket->keys()) {
        buildWidgets();
        const auto on = [&](const char* signal, GCallback call) {
            g_signal_connect(_area, signal, call, this);
        };
        using Self = EmbeddedInterface;
        on("realize", G_CALLBACK(+[](GtkWidget*, Self* self) { self->enterWindow(); }));
        on("unrealize", G_CALLBACK(+[](GtkWidget*, Self* self) { self->leaveWindow(); }));
        on("map", G_CALLBACK(+[](GtkWidget*, Self* self) { self->showAgain(); }));
        on("unmap", G_CALLBACK(+[](GtkWidget*, Self* self) { self->hide(); }));
        on("resize", G_CALLBACK(+[](GtkWidget*, int, int, Self* self) { self->follow(); }));
        GtkEventController* focus = gtk_event_controller_focus_new();
        g_signal_connect_swapped(focus, "enter", G_CALLBACK(+[](Self* self) { self->focusCame(); }), this);
        g_signal_connect_swapped(focus, "leave", G_CALLBACK(+[](Self* self) { self->showRing(false); }),
                                 this);
        gtk_widget_add_controller(_area, focus); // takes ownership
        _socket->keys().setWindowTakes(
            [this](KeySym key, bool isWithAlt) { return _loan.takes(key, isWithAlt); });
        _connection = g_unix_fd_add(
            _socket->connection(), G_IO_IN,
            [](int, GIOCondition, gpointer self) -> gboolean {
                static_cast<Self*>(self)->followInterface();
                return G_SOURCE_CONTINUE;
            },
            this);
        if (_interface->connection() >= 0) {
            // After the window's own events, so that an interface that sends without end does not hold them
            // up.
            _news = g_unix_fd_add_full(
                G_PRIORITY_DEFAULT_IDLE, _interface->connection(), G_IO_IN,
                [](int, GIOCondition, gpointer self) -> gboolean {
                    static_cast<Self*>(self)->update();
                    return G_SOURCE_CONTINUE;
                },
                this, nullptr);
        }
        updateEvery(HiddenMilliseconds);
        update(); // the interface may create its window only now
    }

    ~EmbeddedInterface() {
        stopFollowing();
        for (const guint source : {_connection, _news, _timer}) {
            if (source != 0) g_source_remove(source);
        }
    }
    EmbeddedInterface(const EmbeddedInterface&) = delete;
    EmbeddedInterface& operator=(const EmbeddedInterface&) = delete;

    [[nodiscard]] GtkWidget* widget() const noexcept { return _scroller; }
    [[nodiscard]] GtkWidget* area() const noexcept { return _area; }

  private:
    void buildWidgets() {
        auto* scroller = GTK_SCROLLED_WINDOW(_scroller);
        gtk_scrolled_window_set_policy(scroller, GTK_POLICY_AUTOMATIC, GTK_POLICY_AUTOMATIC);
        // The interface's X window would cover overlay scroll bars.
        gtk_scrolled_window_set_overlay_scrolling(scroller, FALSE);
        GtkWidget* viewport = gtk_viewport_new(nullptr, nullptr);
        gtk_viewport_set_scroll_to_focus(GTK_VIEWPORT(viewport), FALSE);
        gtk_viewport_set_child(GTK_VIEWPORT(viewport), _area);
        gtk_scrolled_window_set_child(scroller, viewport);
        gtk_widget_set_focusable(_scroller, FALSE);
        gtk_widget_set_focusable(_area, TRUE);
        gtk_widget_add_css_class(_scroller, "effect-interface");
    }

    void updateEvery(unsigned milliseconds) {
        if (_timer != 0) g_source_remove(_timer);
        _timer = g_timeout_add(
            milliseconds,
            [](gpointer self) -> gboolean {
                static_cast<EmbeddedInterface*>(self)->update();
                return G_SOURCE_CONTINUE;
            },
            this);
    }

    void update() {
        const EffectInterface::State state = _interface->update();
        followInterface();
        using Clock = std::chrono::steady_clock;
        if (_socket->hasChild()) _windowSeen = Clock::now();
        if (state != EffectInterface::State::Open) {
            end(state);
        } else if (_windowSeen && Clock::now() - *_windowSeen > WindowlessTime) {
            end(EffectInterface::State::Closed);
        }
    }

    // Reports the end once, and rests until the owner destroys this object.
    void end(EffectInterface::State state) {
        for (guint* source : {&_connection, &_news, &_timer}) {
            if (*source != 0) g_source_remove(std::exchange(*source, 0));
        }
        if (const InterfaceEnded ended = std::exchange(_ended, nullptr)) ended(state);
    }

    void followInterface() {
        const bool isLeaving = _socket->followChild();
        if (!_socket->hasChild()) (void)_socket->adoptChild(_interface->namedWindow());
        followSize();
        if (!isLeaving) return;
        // Moves the focus to the GTK widget after the interface.
        GtkRoot* root = gtk_widget_get_root(_area);
        if (root == nullptr) return;
        gdk_toplevel_focus(GDK_TOPLEVEL(gtk_native_get_surface(GTK_NATIVE(root))), GDK_CURRENT_TIME);
        gtk_widget_child_focus(GTK_WIDGET(root), GTK_DIR_TAB_FORWARD);
    }

    [[nodiscard]] int points(int pixels) const {
        const int scale = gtk_widget_get_scale_factor(_area);
        return (pixels + scale - 1) / scale;
    }

    void followSize() {
        const PixelSize smallest = _socket->smallestSize();
        gtk_widget_set_size_request(_area, points(smallest.width), points(smallest.height));
    }

    // Grows the window only once for each size, because the user may shrink it again.
    void growForInterface() {
        const PixelSize wanted = _socket->wantedSize(), smallest = _socket->smallestSize();
        const PixelSize needed{std::max(wanted.width, smallest.width),
                               std::max(wanted.height, smallest.height)};
        if (needed.width <= _grownFor.width && needed.height <= _grownFor.height) return;
        _grownFor = needed;
        growWindow(_scroller, points(needed.width), points(needed.height));
    }

    void focusCame() {
        (void)_socket->keys().giveKeyboard();
        updateRing();
    }

    // GTK sets focus-visible only after it has handled the key that moved the focus.
    void updateRing() {
        GtkRoot* root = gtk_widget_get_root(_area);
        showRing(GTK_IS_WINDOW(root) && gtk_root_get_focus(root) == _area &&
                 gtk_window_get_focus_visible(GTK_WINDOW(root)) != FALSE);
    }

    // The ring is drawn in the margin that `follow` clips from the interface's window.
    void showRing(bool isShown) {
        if (_hasRing == isShown) return;
        _hasRing = isShown;
        if (isShown) {
            gtk_widget_add_css_class(_scroller, "focus-ring");
        } else {
            gtk_widget_remove_css_class(_scroller, "focus-ring");
        }
        follow();
    }

    void enterWindow() {
        GdkSurface* surface = gtk_native_get_surface(gtk_widget_get_native(_area));
        _socket->moveTo(gdk_x11_surface_get_xid(surface));
        GtkRoot* root = gtk_widget_get_root(_area);
        if (GTK_IS_WINDOW(root)) {
            _window = g_object_ref(GTK_WINDOW(root));
            _focusVisible = g_signal_connect_swapped(
                root, "notify::focus-visible",
                G_CALLBACK(+[](EmbeddedInterface* self) { self->updateRing(); }), this);
        }
        // GTK does not notify this widget when an ancestor moves, so the position is checked after every
        // frame.
        _clock = gtk_widget_get_frame_clock(_area);
        g_object_ref(_clock);
        _afterPaint =
            g_signal_connect_swapped(_clock, "after-paint", G_CALLBACK(+[](EmbeddedInterface* self) {
                                         self->follow();
                                         self->growWhenShown();
                                     }),
                                     this);
    }
    void stopFollowing() {
        const auto forget = [](auto*& object, gulong connection) {
            if (object == nullptr) return;
            g_signal_handler_disconnect(object, connection);
            g_object_unref(object);
            object = nullptr;
        };
        forget(_clock, _afterPaint);
        forget(_window, _focusVisible);
    }
    // The window and all X windows in it are about to be destroyed, so the socket is moved out first.
    void leaveWindow() {
        stopFollowing();
        _loan.cancel();
        _socket->moveTo(std::nullopt);
    }

    void showAgain() {
        if (!_ended) return;
        _interface->setVisible(true);
        updateEvery(VisibleMilliseconds);
        update();
        follow();
    }
    void hide() {
        if (!_ended) return;
        _interface->setVisible(false);
        updateEvery(HiddenMilliseconds);
        _socket->hide();
    }

    void follow() {
        if (gtk_widget_get_mapped(_area) == FALSE || gtk_widget_get_width(_area) <= 0) return;
        GtkNative* native = gtk_widget_get_native(_area);
        const PixelRect area = placeOf(_area, native);
        PixelRect visible = visiblePartOf(area, _area, native);
        if (_hasRing) {
            const int ring = RingPoints * gtk_widget_get_scale_factor(_area);
            const PixelRect all = placeOf(_scroller, native);
            visible = intersection(visible,
                                   {all.x + ring, all.y + ring, all.width - 2 * ring, all.height - 2 * ring});
        }
        _socket->place(area, visible);
    }

    void growWhenShown() {
        if (gtk_widget_get_mapped(_area) != FALSE && gtk_widget_get_width(_area) > 0) growForInterface();
    }

    GtkWidget* const _scroller;
    GtkWidget* const _area;                   // owns this object
    const std::unique_ptr<X11Socket> _socket; // destroyed after _interface, which is in the socket
    const std::unique_ptr<EffectInterface> _interface;
    InterfaceEnded _ended; // null once it was called
    KeyboardLoan _loan;
    GdkFrameClock* _clock = nullptr; // strong reference
    GtkWindow* _window = nullptr;    // strong reference
    gulong _afterPaint = 0, _focusVisible = 0;
    guint _timer = 0, _connection = 0, _news = 0;
    std::optional<std::chrono::steady_clock::time_point>
        _windowSeen; // last; no value before the first window
    PixelSize _grownFor;
    bool _hasRing = false;
};

} // namespace

GtkWidget* makeEmbeddedInterface(std::unique_ptr<X11Socket> socket,
                                 std::unique_ptr<EffectInterface> interface, const std::string& name,
                                 InterfaceEnded ended) {
    auto embedded =
        std::make_unique<EmbeddedInterface>(std::move(socket), std::move(interface), std::move(ended));
    GtkWidget* widget = embedded->widget();
    for (GtkWidget* named : {widget, embedded->area()}) {
        gtk_accessible_update_property(GTK_ACCESSIBLE(named), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(),
                                       -1);
    }
    GtkWidget* area = embedded->area();
    g_object_set_data_full(G_OBJECT(area), "embedded-interface", embedded.release(),
                           [](gpointer object) { delete static_cast<EmbeddedInterface*>(object); });
    return widget;
}

} // namespace platform::lv2

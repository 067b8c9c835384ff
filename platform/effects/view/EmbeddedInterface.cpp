// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/EmbeddedInterface.hpp"

#include "platform/effects/view/growWindow.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <cmath>
#include <gdk/x11/gdkx.h>
#include <glib-unix.h>

namespace platform::lv2 {
namespace {

constexpr unsigned VisibleMilliseconds = 33;
constexpr unsigned HiddenMilliseconds = 500; // an interface may still have work of its own
constexpr int RingPoints = 4;                // what the focus ring takes from the edges of an interface

// Finds the control that Alt with this letter presses.
bool hasMnemonic(GtkWidget* widget, guint key) {
    if (gtk_widget_get_mapped(widget) == FALSE) return false;
    if (GTK_IS_LABEL(widget) &&
        gdk_keyval_to_lower(gtk_label_get_mnemonic_keyval(GTK_LABEL(widget))) == gdk_keyval_to_lower(key)) {
        return true;
    }
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (hasMnemonic(child, key)) return true;
    }
    return false;
}

class EmbeddedInterface {
  public:
    EmbeddedInterface(std::unique_ptr<X11Socket> socket, std::unique_ptr<InterfaceHost> host)
        : _scroller(gtk_scrolled_window_new())
        , _area(gtk_drawing_area_new())
        , _socket(std::move(socket))
        , _host(std::move(host)) {
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
        gtk_widget_add_controller(_area, focus); // which owns it
        _socket->keys().setWindowTakes([this](KeySym key, bool isWithAlt) { return takes(key, isWithAlt); });
        _connection = g_unix_fd_add(
            _socket->connection(), G_IO_IN,
            [](int, GIOCondition, gpointer self) -> gboolean {
                static_cast<Self*>(self)->followInterface();
                return G_SOURCE_CONTINUE;
            },
            this);
        updateEvery(HiddenMilliseconds);
        update(); // it may create its window only now
    }

    ~EmbeddedInterface() {
        stopFollowing();
        g_source_remove(_connection);
        if (_timer != 0) g_source_remove(_timer);
    }
    EmbeddedInterface(const EmbeddedInterface&) = delete;
    EmbeddedInterface& operator=(const EmbeddedInterface&) = delete;

    [[nodiscard]] GtkWidget* widget() const noexcept { return _scroller; }
    [[nodiscard]] GtkWidget* area() const noexcept { return _area; }

  private:
    void buildWidgets() {
        auto* scroller = GTK_SCROLLED_WINDOW(_scroller);
        gtk_scrolled_window_set_policy(scroller, GTK_POLICY_AUTOMATIC, GTK_POLICY_AUTOMATIC);
        // The interface's window would cover bars that overlay the content.
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
        _host->update();
        followInterface();
    }

    void followInterface() {
        const bool isLeaving = _socket->followChild();
        if (!_socket->hasChild()) (void)_socket->adoptChild(_host->namedWindow());
        followSize();
        if (!isLeaving) return;
        // Back to this window's own controls, to the one after the interface.
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

    // Once for each size: a person may shrink the window again.
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

    // The window learns that the focus is to be seen only after the key that moved it.
    void updateRing() {
        GtkRoot* root = gtk_widget_get_root(_area);
        showRing(GTK_IS_WINDOW(root) && gtk_root_get_focus(root) == _area &&
                 gtk_window_get_focus_visible(GTK_WINDOW(root)) != FALSE);
    }

    // The ring is drawn where the interface's window is clipped for it.
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

    // Called while the server holds the key back; after a yes it goes to the focused control of this window.
    bool takes(KeySym key, bool isWithAlt) {
        GtkRoot* root = gtk_widget_get_root(_area);
        if (root == nullptr || (isWithAlt && !hasMnemonic(GTK_WIDGET(root), static_cast<guint>(key)))) {
            return false;
        }
        // Another control would use the space bar itself, if a click gave the interface the keyboard.
        if (gtk_root_get_focus(root) != _area) gtk_widget_grab_focus(_area);
        giveBackAfterKey(root);
        return true;
    }

    // The interface gets the keyboard back when the key has gone up, unless the focus went elsewhere.
    void giveBackAfterKey(GtkRoot* root) {
        if (_isKeyBorrowed) return;
        _isKeyBorrowed = true;
        GtkEventController* keys = gtk_event_controller_key_new();
        gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
        g_signal_connect(keys, "key-released",
                         G_CALLBACK(+[](GtkEventController* controller, guint, guint, GdkModifierType,
                                        EmbeddedInterface* self) { self->keyWentUp(controller); }),
                         this);
        _borrowing = keys;
        g_object_add_weak_pointer(G_OBJECT(keys), reinterpret_cast<gpointer*>(&_borrowing));
        gtk_widget_add_controller(GTK_WIDGET(root), keys);
    }

    void keyWentUp(GtkEventController*) {
        _isKeyBorrowed = false;
        // After the key's own turn: a control that it pressed may have moved the focus.
        g_idle_add_once(
            [](gpointer area) {
                auto* self =
                    static_cast<EmbeddedInterface*>(g_object_get_data(G_OBJECT(area), "embedded-interface"));
                if (self != nullptr) self->stopBorrowing();
                g_object_unref(area);
            },
            g_object_ref(_area));
    }

    void stopBorrowing() {
        if (_borrowing == nullptr) return;
        GtkWidget* root = gtk_event_controller_get_widget(_borrowing);
        gtk_widget_remove_controller(root, _borrowing);
        if (GTK_IS_WINDOW(root) && gtk_window_is_active(GTK_WINDOW(root)) != FALSE &&
            gtk_root_get_focus(GTK_ROOT(root)) == _area) {
            (void)_socket->keys().giveKeyboard();
        }
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
        // An ancestor can move without this widget being told; every frame that is drawn is checked.
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
    // The window is about to be destroyed, and all X windows in it: the socket must leave it before.
    void leaveWindow() {
        stopFollowing();
        if (_borrowing != nullptr) {
            gtk_widget_remove_controller(gtk_event_controller_get_widget(_borrowing), _borrowing);
        }
        _isKeyBorrowed = false;
        _socket->moveTo(std::nullopt);
    }

    void showAgain() {
        _host->setVisible(true);
        update();
        follow();
        updateEvery(VisibleMilliseconds);
    }
    void hide() {
        _host->setVisible(false);
        _socket->hide();
        updateEvery(HiddenMilliseconds);
    }

    // Returns the widget's rectangle in the pixels of its window.
    [[nodiscard]] PixelRect placeOf(GtkWidget* widget, GtkNative* native) const {
        graphene_rect_t bounds;
        if (!gtk_widget_compute_bounds(widget, GTK_WIDGET(native), &bounds)) return {};
        double x = 0, y = 0; // of the native widget in its surface
        gtk_native_get_surface_transform(native, &x, &y);
        const double scale = gtk_widget_get_scale_factor(_area);
        const auto pixel = [scale](double point) { return static_cast<int>(std::lround(point * scale)); };
        const int left = pixel(bounds.origin.x + x), top = pixel(bounds.origin.y + y);
        return {left, top, pixel(bounds.origin.x + x + bounds.size.width) - left,
                pixel(bounds.origin.y + y + bounds.size.height) - top};
    }

    void follow() {
        if (gtk_widget_get_mapped(_area) == FALSE || gtk_widget_get_width(_area) <= 0) return;
        GtkNative* native = gtk_widget_get_native(_area);
        const PixelRect area = placeOf(_area, native);
        PixelRect visible = area;
        for (GtkWidget* ancestor = gtk_widget_get_parent(_area); ancestor != nullptr;
             ancestor = gtk_widget_get_parent(ancestor)) {
            if (ancestor == GTK_WIDGET(native) || gtk_widget_get_overflow(ancestor) == GTK_OVERFLOW_HIDDEN) {
                visible = intersection(visible, placeOf(ancestor, native));
            }
        }
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
    const std::unique_ptr<X11Socket> _socket; // outlives the interface in it
    const std::unique_ptr<InterfaceHost> _host;
    GdkFrameClock* _clock = nullptr; // a reference is held
    GtkWindow* _window = nullptr;    // as well
    gulong _afterPaint = 0, _focusVisible = 0;
    guint _timer = 0, _connection = 0;
    PixelSize _grownFor;
    bool _hasRing = false;
    bool _isKeyBorrowed = false;
    GtkEventController* _borrowing = nullptr; // of the window, while it has a key of the interface
};

} // namespace

GtkWidget* makeEmbeddedInterface(std::unique_ptr<X11Socket> socket, std::unique_ptr<InterfaceHost> host,
                                 const std::string& name) {
    auto interface = std::make_unique<EmbeddedInterface>(std::move(socket), std::move(host));
    GtkWidget* widget = interface->widget();
    for (GtkWidget* named : {widget, interface->area()}) {
        gtk_accessible_update_property(GTK_ACCESSIBLE(named), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(),
                                       -1);
    }
    GtkWidget* area = interface->area();
    g_object_set_data_full(G_OBJECT(area), "embedded-interface", interface.release(),
                           [](gpointer object) { delete static_cast<EmbeddedInterface*>(object); });
    return widget;
}

} // namespace platform::lv2

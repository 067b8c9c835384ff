// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where an effect meets the screen: a view whose widget keeps the socket with the effect's interface in step
// with its own place. Main thread only.
#include "platform/effects/genericView.private.hpp"
#include "platform/effects/lv2/InterfaceHost.private.hpp"
#include "platform/foundation/console.hpp"
#include "platform/ui/UIView.private.hpp"
#include "platform/ui/UIViewController.hpp"

#include <algorithm>
#include <cmath>
#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

namespace platform::lv2 {
namespace {

constexpr unsigned VisibleMilliseconds = 33;
constexpr unsigned HiddenMilliseconds = 500; // an interface may still have work of its own

class EmbeddedInterface {
  public:
    /// Make the widget that owns the interface and shows it.
    static GtkWidget* makeWidget(std::unique_ptr<InterfaceHost> host, const std::string& name) {
        GtkWidget* area = gtk_drawing_area_new();
        gtk_accessible_update_property(GTK_ACCESSIBLE(area), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
        auto* self = new EmbeddedInterface(area, std::move(host)); // owned by the widget
        g_object_set_data_full(G_OBJECT(area), "embedded-interface", self,
                               [](gpointer object) { delete static_cast<EmbeddedInterface*>(object); });
        return area;
    }

    ~EmbeddedInterface() {
        stopFollowing();
        if (_timer != 0) g_source_remove(_timer);
    }
    EmbeddedInterface(const EmbeddedInterface&) = delete;
    EmbeddedInterface& operator=(const EmbeddedInterface&) = delete;

  private:
    EmbeddedInterface(GtkWidget* area, std::unique_ptr<InterfaceHost> host)
        : _area(area)
        , _host(std::move(host)) {
        const auto on = [&](const char* signal, GCallback call) {
            g_signal_connect(area, signal, call, this);
        };
        using Self = EmbeddedInterface;
        on("realize", G_CALLBACK(+[](GtkWidget*, Self* self) { self->enterWindow(); }));
        on("unrealize", G_CALLBACK(+[](GtkWidget*, Self* self) { self->leaveWindow(); }));
        on("map", G_CALLBACK(+[](GtkWidget*, Self* self) { self->showAgain(); }));
        on("unmap", G_CALLBACK(+[](GtkWidget*, Self* self) { self->hide(); }));
        on("resize", G_CALLBACK(+[](GtkWidget*, int, int, Self* self) { self->follow(); }));
        gtk_widget_set_focusable(area, TRUE);
        GtkEventController* focus = gtk_event_controller_focus_new();
        g_signal_connect_swapped(focus, "enter",
                                 G_CALLBACK(+[](Self* self) { (void)self->_host->socket().giveKeyboard(); }),
                                 this);
        gtk_widget_add_controller(area, focus); // which owns it
        updateEvery(HiddenMilliseconds);
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
        if (!_host->update()) return;
        // Back to this window's own controls, to the one after the interface.
        GtkRoot* root = gtk_widget_get_root(_area);
        if (root == nullptr) return;
        gdk_toplevel_focus(GDK_TOPLEVEL(gtk_native_get_surface(GTK_NATIVE(root))), GDK_CURRENT_TIME);
        gtk_widget_child_focus(GTK_WIDGET(root), GTK_DIR_TAB_FORWARD);
    }

    void enterWindow() {
        GdkSurface* surface = gtk_native_get_surface(gtk_widget_get_native(_area));
        _host->socket().moveTo(gdk_x11_surface_get_xid(surface));
        // An ancestor can move without this widget hearing of it; every frame that is drawn tells.
        _clock = gtk_widget_get_frame_clock(_area);
        g_object_ref(_clock);
        _afterPaint = g_signal_connect_swapped(
            _clock, "after-paint", G_CALLBACK(+[](EmbeddedInterface* self) { self->follow(); }), this);
    }
    void stopFollowing() {
        if (_clock == nullptr) return;
        g_signal_handler_disconnect(_clock, _afterPaint);
        g_object_unref(_clock);
        _clock = nullptr;
    }
    // The window goes, and all X windows in it with it: the socket must be out of it before.
    void leaveWindow() {
        stopFollowing();
        _host->socket().moveTo(std::nullopt);
    }

    void showAgain() {
        follow();
        updateEvery(VisibleMilliseconds);
    }
    void hide() {
        _host->socket().hide();
        updateEvery(HiddenMilliseconds);
    }

    // Gives the widget's rectangle in the pixels of its window.
    [[nodiscard]] PixelRect placeOf(GtkWidget* widget, GtkNative* native) const {
        graphene_rect_t bounds;
        if (!gtk_widget_compute_bounds(widget, GTK_WIDGET(native), &bounds)) return {};
        double x = 0, y = 0; // of the native widget in its surface
        gtk_native_get_surface_transform(native, &x, &y);
        const double scale = gtk_widget_get_scale_factor(_area);
        const auto pixel = [scale](double points) { return static_cast<int>(std::lround(points * scale)); };
        const int left = pixel(bounds.origin.x + x), top = pixel(bounds.origin.y + y);
        return {left, top, pixel(bounds.origin.x + x + bounds.size.width) - left,
                pixel(bounds.origin.y + y + bounds.size.height) - top};
    }

    static PixelRect intersection(const PixelRect& a, const PixelRect& b) {
        const int left = std::max(a.x, b.x), top = std::max(a.y, b.y);
        return {left, top, std::min(a.x + a.width, b.x + b.width) - left,
                std::min(a.y + a.height, b.y + b.height) - top};
    }

    void follow() {
        if (gtk_widget_get_mapped(_area) == FALSE || gtk_widget_get_width(_area) <= 0) return;
        GtkNative* native = gtk_widget_get_native(_area);
        const PixelRect area = placeOf(_area, native);
        PixelRect visible = area;
        for (GtkWidget* ancestor = gtk_widget_get_parent(_area); ancestor != nullptr;
             ancestor = gtk_widget_get_parent(ancestor))
            if (ancestor == GTK_WIDGET(native) || gtk_widget_get_overflow(ancestor) == GTK_OVERFLOW_HIDDEN)
                visible = intersection(visible, placeOf(ancestor, native));
        _host->socket().place(area, visible);
    }

    GtkWidget* const _area; // owns this object
    const std::unique_ptr<InterfaceHost> _host;
    GdkFrameClock* _clock = nullptr; // a reference is held
    gulong _afterPaint = 0;
    guint _timer = 0;
};

std::shared_ptr<UIViewController> controllerOf(GtkWidget* widget) {
    auto controller = std::make_shared<UIViewController>();
    controller->setView(viewWithWidget(widget));
    return controller;
}

float scaleOf(GdkDisplay* display) {
    int scale = 1;
    GListModel* monitors = gdk_display_get_monitors(display);
    for (guint i = 0; i < g_list_model_get_n_items(monitors); ++i) {
        auto* monitor = static_cast<GdkMonitor*>(g_list_model_get_item(monitors, i));
        scale = std::max(scale, gdk_monitor_get_scale_factor(monitor));
        g_object_unref(monitor);
    }
    return static_cast<float>(scale);
}

// Gives the interface to use: the first whose needs can be met. Says why others are passed over.
std::optional<Interface> usableInterface(const Processor& processor) {
    const std::scoped_lock lock(processor.world()->mutex());
    for (Interface& interface : processor.world()->interfaces()) {
        const std::string lacked = lackedInterfaceFeature(interface);
        if (lacked.empty()) return std::move(interface);
        warn("The interface " + interface.uri + " requires the feature " + lacked +
             ", which this host does not have; a plain one stands in for it.");
    }
    return std::nullopt;
}

} // namespace

std::shared_ptr<UIViewController> makeEffectViewController(std::shared_ptr<AudioUnit> unit) {
    GdkDisplay* display = gdk_display_get_default();
    const std::string name = unit->lv2Processor().plugin().name;
    const auto interface = usableInterface(unit->lv2Processor());
    if (!interface || !GDK_IS_X11_DISPLAY(display) || !unit->claimInterface())
        return controllerOf(makeGenericInterface(std::move(unit), name));

    tolerateInterfaceErrors(gdk_x11_display_get_xdisplay(display));
    auto socket = X11Socket::make(gdk_display_get_name(display));
    if (!socket) {
        unit->releaseInterface();
        warn("The X server does not take a connection for the interface of \"" + name + "\".");
        return nullptr;
    }
    auto host = InterfaceHost::make(std::move(unit), *interface, std::move(socket), scaleOf(display));
    if (!host) {
        warn(host.error().localizedDescription());
        return nullptr;
    }
    return controllerOf(EmbeddedInterface::makeWidget(std::move(host.value()), name));
}

} // namespace platform::lv2

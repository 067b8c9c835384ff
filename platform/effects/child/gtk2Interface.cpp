// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program for interfaces made with GTK 2. The interface's widget is in a GtkPlug, whose window is in the
// application's window. The application is not an XEMBED embedder, so this program tells the plug itself what
// an embedder would.
#include "platform/effects/child/interfaceProcess.hpp"

#include <X11/Xlib.h>
#include <cstdlib>
#include <gdk/gdkx.h>
#include <glib-unix.h>
#include <gtk/gtk.h>

namespace platform::lv2 {
namespace {

class Gtk2Toolkit final : public InterfaceToolkit {
  public:
    Gtk2Toolkit() {
        ::unsetenv("GTK_MODULES"); // modules of the desktop need what the confinement does not allow
        gtk_disable_setlocale();   // keeps the decimal point that interfaces expect
        _hasDisplay = gtk_init_check(nullptr, nullptr) != FALSE;
        if (_hasDisplay) stopSharingMemory();
    }

    unsigned long embed(void* widget, unsigned long parent) override {
        if (!_hasDisplay || !GTK_IS_WIDGET(widget)) return 0;
        _plug = gtk_plug_new(static_cast<GdkNativeWindow>(parent));
        gtk_widget_add_events(_plug, GDK_FOCUS_CHANGE_MASK); // which a plug does not ask for
        g_signal_connect(_plug, "focus-in-event", G_CALLBACK(focusCame), nullptr);
        g_signal_connect(_plug, "focus-out-event", G_CALLBACK(focusLeft), nullptr);
        g_signal_connect(_plug, "delete-event", G_CALLBACK(gtk_true), nullptr); // the application closes it
        gtk_container_add(GTK_CONTAINER(_plug), GTK_WIDGET(widget));
        gtk_widget_realize(_plug);
        gdk_window_add_filter(gtk_widget_get_window(_plug), ignoreDestruction, nullptr);
        gtk_widget_show_all(_plug); // many interfaces leave this to the host
        gdk_display_sync(gtk_widget_get_display(_plug));
        return gtk_plug_get_id(GTK_PLUG(_plug));
    }

    void run(int descriptor, const Serve& serve) override {
        _serve = &serve;
        g_unix_fd_add(
            descriptor, G_IO_IN,
            [](int, GIOCondition, gpointer self) -> gboolean {
                static_cast<Gtk2Toolkit*>(self)->serveOnce();
                return G_SOURCE_CONTINUE;
            },
            this);
        serveOnce();
        while (!_isOver) gtk_main_iteration();
    }

  private:
    // The confinement allows no shared memory with the X server. GTK stops using it after the first failure,
    // with a warning; here this happens before the interface draws, and without the warning.
    static void stopSharingMemory() {
        const guint handler = g_log_set_handler(
            "Gdk", G_LOG_LEVEL_WARNING, [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
        g_object_unref(gdk_image_new(GDK_IMAGE_FASTEST, gdk_visual_get_system(), 1, 1));
        g_log_remove_handler("Gdk", handler);
    }

    // The application destroys the window when it closes the interface. If GTK noticed that, it would destroy
    // the interface's widgets before the interface does.
    static GdkFilterReturn ignoreDestruction(GdkXEvent* event, GdkEvent*, gpointer) {
        return static_cast<XEvent*>(event)->type == DestroyNotify ? GDK_FILTER_REMOVE : GDK_FILTER_CONTINUE;
    }

    void serveOnce() {
        if (_isOver) return;
        const auto left = (*_serve)();
        if (_timer != 0) g_source_remove(_timer);
        _timer = 0;
        _isOver = !left;
        if (_isOver) return;
        _timer = g_timeout_add(
            static_cast<guint>(left->count()),
            [](gpointer data) -> gboolean {
                auto* self = static_cast<Gtk2Toolkit*>(data);
                self->_timer = 0;
                self->serveOnce();
                return G_SOURCE_REMOVE;
            },
            this);
    }

    // Messages of the XEMBED protocol; Xlib has macros with the usual names.
    enum Message : long { Activate = 1, Deactivate = 2, TakeFocus = 4, LeaveFocus = 5 };
    enum class Focused : long { Before, First }; // which widget takes the focus

    static void tellPlug(GtkWidget* plug, Message message, Focused focused = Focused::Before) {
        GdkDisplay* display = gtk_widget_get_display(plug);
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = GDK_WINDOW_XID(gtk_widget_get_window(plug));
        event.xclient.message_type = gdk_x11_get_xatom_by_name_for_display(display, "_XEMBED");
        event.xclient.format = 32;
        event.xclient.data.l[0] = CurrentTime;
        event.xclient.data.l[1] = message;
        event.xclient.data.l[2] = static_cast<long>(focused);
        XSendEvent(gdk_x11_display_get_xdisplay(display), event.xclient.window, False, NoEventMask, &event);
    }

    static gboolean focusCame(GtkWidget* plug, GdkEventFocus*, gpointer) {
        tellPlug(plug, Activate);
        tellPlug(plug, TakeFocus,
                 gtk_window_get_focus(GTK_WINDOW(plug)) != nullptr ? Focused::Before : Focused::First);
        return FALSE;
    }
    static gboolean focusLeft(GtkWidget* plug, GdkEventFocus*, gpointer) {
        tellPlug(plug, LeaveFocus);
        tellPlug(plug, Deactivate);
        return FALSE;
    }

    bool _hasDisplay = false, _isOver = false;
    GtkWidget* _plug = nullptr; // never destroyed, because an interface may destroy its widget itself
    const Serve* _serve = nullptr;
    guint _timer = 0;
};

} // namespace
} // namespace platform::lv2

int main(int count, char** arguments) {
    using namespace platform::lv2;
    runInterfaceProcess(count, arguments, []() -> std::unique_ptr<InterfaceToolkit> {
        return std::make_unique<Gtk2Toolkit>();
    });
}

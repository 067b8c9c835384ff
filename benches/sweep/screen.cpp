// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Opens the interface of one installed effect in a panel of the main window's size, on the display that the
// environment names, and prints what appears. Each line is a word and its value.
//
// Usage: bench_sweep_screen URI
#include "instantiate.hpp"

#include "platform/audio/OfflineDevice.hpp"
#include "platform/audio/seams.hpp"
#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/console.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/UIWindow.hpp"
#include "shared/Common/Extensions/pinToSuperviewEdges.hpp"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <clocale>
#include <cstdlib>
#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>
#include <set>
#include <string>

using namespace platform;
using bench::instantiate;
using bench::say;

namespace {

constexpr int PanelWidth = 920, PanelHeight = 617;
constexpr std::size_t PictureColours = 8; // a picture with fewer colours counts as a plain background
constexpr double SecondsToAppear = 8;

std::string sizeText(double width, double height) {
    return std::to_string(static_cast<int>(width)) + " x " + std::to_string(static_cast<int>(height));
}

/// Starts GTK with the application's settings, as far as they matter to interfaces.
void startToolkit() {
    ::setenv("GDK_BACKEND", "x11", 1);
    ::setenv("GSK_RENDERER", "cairo", 1);
    ::setenv("GDK_DEBUG", "gl-disable", 1);
    std::setlocale(LC_NUMERIC, "C");
    gtk_disable_setlocale();
    gtk_init();
}

/// Returns the only GTK window.
GtkWidget* topLevel() {
    auto* window = static_cast<GtkWidget*>(g_list_model_get_item(gtk_window_get_toplevels(), 0));
    g_object_unref(window); // GTK keeps a reference as long as the window is open
    return window;
}

/// Returns whether `widget` contains the effect's own interface.
bool hasInterface(GtkWidget* widget) {
    if (gtk_widget_has_css_class(widget, "effect-interface") != FALSE) return true;
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (hasInterface(child)) return true;
    }
    return false;
}

/// Finds the windows of the effect's interface by asking the X server.
class Windows {
  public:
    explicit Windows(GtkWidget* widget)
        : _display(XOpenDisplay(nullptr))
        , _topLevel(gdk_x11_surface_get_xid(gtk_native_get_surface(gtk_widget_get_native(widget)))) {
        // The interface may destroy its window between two requests.
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    }
    ~Windows() { XCloseDisplay(_display); }
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;

    /// Returns the window that the effect created, or None.
    [[nodiscard]] Window interface() const {
        const Window socket = firstChild(_topLevel);
        return socket == None ? None : firstChild(socket);
    }
    [[nodiscard]] XWindowAttributes attributesOf(Window window) const {
        XWindowAttributes attributes{};
        XGetWindowAttributes(_display, window, &attributes);
        return attributes;
    }
    [[nodiscard]] std::size_t coloursOf(Window window) const {
        const XWindowAttributes attributes = attributesOf(window);
        if (attributes.map_state != IsViewable) return 0;
        std::set<unsigned long> colours;
        XImage* image = XGetImage(_display, window, 0, 0, static_cast<unsigned>(attributes.width),
                                  static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
        if (image == nullptr) return 0;
        for (int y = 0; y < image->height; ++y) {
            for (int x = 0; x < image->width; ++x) {
                colours.insert(XGetPixel(image, x, y) & 0xffffff);
            }
        }
        XDestroyImage(image);
        return colours.size();
    }

  private:
    [[nodiscard]] Window firstChild(Window window) const {
        Window root = None, parent = None, *children = nullptr;
        unsigned count = 0;
        if (XQueryTree(_display, window, &root, &parent, &children, &count) == 0) return None;
        Window first = None;
        for (unsigned i = 0; i < count && first == None; ++i) { // skips GTK's input-only window
            if (attributesOf(children[i]).c_class == InputOutput) first = children[i];
        }
        if (children != nullptr) XFree(children);
        return first;
    }

    Display* const _display;
    const Window _topLevel;
};

void look(const UIView& panel) {
    const Windows windows(topLevel());
    if (!hasInterface(topLevel())) {
        RunLoop::current().runFor(0.3);
        say("shows", "list");
        return;
    }
    std::size_t colours = 0;
    const bool hasAppeared = RunLoop::current().runUntil(
        [&] {
            RunLoop::current().runFor(0.1);
            const Window window = windows.interface();
            colours = window == None ? 0 : windows.coloursOf(window);
            return colours > PictureColours;
        },
        SecondsToAppear);
    RunLoop::current().runFor(0.5); // the interface may set its size late
    const Window window = windows.interface();
    if (window == None) {
        say("shows", "no window");
        return;
    }
    const XWindowAttributes attributes = windows.attributesOf(window);
    say("shows", hasAppeared ? "own" : "empty");
    say("colours", std::to_string(colours));
    say("size", sizeText(attributes.width, attributes.height));
    say("panel", sizeText(panel.bounds().width, panel.bounds().height));
    if (attributes.width > PanelWidth || attributes.height > PanelHeight) say("larger", "than the panel");
    // While an interface hangs, the window has not grown to the interface's size yet.
    if (hasAppeared &&
        (attributes.width > panel.bounds().width || attributes.height > panel.bounds().height)) {
        say("scrolls", "");
    }
}

} // namespace

int main(int count, char** arguments) {
    reserveStandardOutput();
    if (count != 2) {
        warn("usage: bench_sweep_screen URI");
        return 2;
    }
    startToolkit();
    setSharedOutputDevice(std::make_shared<OfflineDevice>());
    say("stage", "instance");
    auto unit = instantiate(arguments[1]);
    if (!unit) return 0;

    say("stage", "interface");
    std::shared_ptr<UIViewController> controller;
    bool isAnswered = false;
    unit->auAudioUnit()->requestViewController([&](std::shared_ptr<UIViewController> made) {
        controller = std::move(made);
        isAnswered = true;
    });
    RunLoop::current().runUntil([&] { return isAnswered; }, 60);
    if (!controller) {
        say("shows", "nothing");
        return 0;
    }
    const auto window = std::make_shared<UIWindow>();
    const auto screen = std::make_shared<UIViewController>();
    const auto panel = std::make_shared<UIView>();
    screen->setView(panel);
    window->setRootViewController(screen);
    gtk_window_set_default_size(GTK_WINDOW(topLevel()), PanelWidth, PanelHeight);
    window->makeKeyAndVisible();
    RunLoop::current().runUntil([&] { return panel->bounds().width == PanelWidth; }, 5);
    say("stage", "show");
    panel->addSubview(controller->view());
    tonewright::pinToSuperviewEdges(*controller->view());
    look(*panel);

    say("stage", "close");
    window->close();
    controller.reset();
    RunLoop::current().runFor(0.1);
    unit.reset();
    say("done", "");
    return 0;
}

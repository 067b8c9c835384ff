// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program for interfaces made with Qt 5. The window of the interface's widget is moved into the
// application's window; Qt regards it as a top-level window, so that it takes the focus and states its
// smallest size.
#include "platform/effects/child/interfaceProcess.hpp"

#include <QApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <clocale>
#include <cstdlib>
// After Qt, whose names its macros replace.
#include <X11/Xlib.h>

namespace platform::lv2 {
namespace {

QApplication& application() {
    static int count = 1;
    static char name[] = "interface";
    static char* words[] = {static_cast<char*>(name), nullptr};
    static QApplication made(count, static_cast<char**>(words));
    return made;
}

// Calls a function whenever a descriptor is readable.
class Notifier final : public QSocketNotifier {
  public:
    Notifier(int descriptor, std::function<void()> call)
        : QSocketNotifier(descriptor, QSocketNotifier::Read)
        , _call(std::move(call)) {}

  protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::SockAct) return QSocketNotifier::event(event);
        _call();
        return true;
    }

  private:
    const std::function<void()> _call;
};

class Qt5Toolkit final : public InterfaceToolkit {
  public:
    Qt5Toolkit() {
        ::setenv("QT_QPA_PLATFORM", "xcb", 1);
        ::setenv("QT_QPA_PLATFORMTHEME", "",
                 1); // themes of the desktop need what the confinement does not allow
        ::setenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "0", 1);
        application().setQuitOnLastWindowClosed(false);
        std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe): Qt has changed it just now
    }

    unsigned long embed(void* widget, unsigned long parent) override {
        Display* display = XOpenDisplay(nullptr);
        if (widget == nullptr || display == nullptr) return 0;
        static QWidget frame; // never destroyed, because an interface may destroy its widget itself
        frame.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        auto* layout = new QVBoxLayout(&frame); // owned by the frame
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSizeConstraint(QLayout::SetMinAndMaxSize);
        layout->addWidget(static_cast<QWidget*>(widget));
        frame.adjustSize();
        const WId window = frame.winId();
        QGuiApplication::sync(); // the window must exist before another connection uses it
        XReparentWindow(display, window, parent, 0, 0);
        XSync(display, False);
        XCloseDisplay(display);
        static_cast<QWidget*>(widget)->show();
        frame.show();
        return window;
    }

    void run(int descriptor, const Serve& serve) override {
        QTimer timer;
        timer.setSingleShot(true);
        const auto serveOnce = [&] {
            if (const auto left = serve()) {
                timer.start(*left);
            } else {
                QCoreApplication::exit(); // also the loops of dialogs
            }
        };
        const Notifier news(descriptor, serveOnce);
        QObject::connect(&timer, &QTimer::timeout, serveOnce);
        timer.start(0);
        QApplication::exec();
    }
};

} // namespace
} // namespace platform::lv2

int main(int count, char** arguments) {
    using namespace platform::lv2;
    runInterfaceProcess(count, arguments,
                        []() -> std::unique_ptr<InterfaceToolkit> { return std::make_unique<Qt5Toolkit>(); });
}

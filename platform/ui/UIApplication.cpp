// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIApplication.hpp"

#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/termination.hpp"
#include "platform/ui/UIApplicationDelegate.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/classRegistry.hpp"
#include "platform/ui/commandLine.hpp"
#include "platform/ui/externalURL.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"
#include "platform/ui/toolkit/appearance.hpp"
#include "platform/ui/toolkit/firstFrame.hpp"
#include "platform/ui/toolkit/startToolkit.hpp"
#include "platform/ui/widgets.hpp"

#include <csignal>
#include <cstdlib>
#include <glib-unix.h>
#include <gtk/gtk.h>
#include <limits>
#include <malloc.h>

namespace platform {
namespace {

// Creates the controller of the main screen and its window from the interface description.
std::shared_ptr<UIWindow> loadMainScreen() {
    const std::string& name = applicationIdentity().interfaceName;
    applyStyleSheet(name.c_str());
    const auto description = InterfaceDescription::load(name, Bundle::main());
    if (!description) std::exit(EXIT_FAILURE);
    auto window = description->window();
    const auto controller = makeController(description->controllerClass(), NSCoder(description));
    if (!window || !controller) {
        fatal("The main interface description needs a window and a view with a known controller class");
    }
    if (const auto& delegate = UIApplication::shared().delegate()) delegate->setWindow(window);
    window->setRootViewController(controller);
    return window;
}

gboolean onSignal(gpointer) {
    UIApplication::shared().terminate();
    return G_SOURCE_CONTINUE;
}

// Tells the delegate when the application's window gets or loses the keyboard focus.
class Activity {
  public:
    explicit Activity(UIApplication& application)
        : _application(application) {}

    void set(bool isActive) {
        if (isActive == _isActive) return;
        _isActive = isActive;
        UIApplicationDelegate& delegate = unwrap(_application.delegate());
        if (isActive) {
            delegate.applicationDidBecomeActive(_application);
        } else {
            delegate.applicationWillResignActive(_application);
        }
    }

  private:
    UIApplication& _application;
    bool _isActive = false;
};

// Keeps malloc's thresholds at their initial values. By default, glibc raises them to the largest block that
// was ever freed. The sound server's library would then get its large blocks from the heap, where they have
// to be cleared and so become resident, instead of from fresh pages, most of which are never touched. This
// saves 6 MB while playing.
void returnMemoryEarly() {
#ifdef M_TRIM_THRESHOLD
    constexpr int DefaultThreshold = 128 * 1024; // bytes; setting any value turns the adjustment off
    mallopt(M_TRIM_THRESHOLD, DefaultThreshold);
#endif
}

} // namespace

UIApplication& UIApplication::shared() {
    static UIApplication application;
    return application;
}

void UIApplication::openURL(const URL& url, const std::map<std::string, std::string>&,
                            std::function<void(bool)> completionHandler) {
    openOnDesktop(url, std::move(completionHandler));
}

void UIApplication::terminate() {
    _isTerminating = true;
    RunLoop::current().wakeUp();
}

int UIApplicationMain(int argc, char** argv, const std::optional<std::string>&,
                      std::string_view delegateClassName) {
    endAtOnceOnSignals(); // also while GTK waits for the display
    reserveStandardOutput();
    returnMemoryEarly();
    std::signal(SIGPIPE, SIG_IGN); // the reader of standard output may end first
    answerCommandLine(argc, argv);
    startToolkit();
    followColorScheme();

    UIApplication& application = UIApplication::shared();
    application.setDelegate(makeDelegate(delegateClassName));
    if (!application.delegate()) {
        fatal("The class \"" + std::string(delegateClassName) + "\" is not registered");
    }
    UIApplicationDelegate& delegate = *application.delegate();
    for (const int number : TerminationSignals) g_unix_signal_add(number, onSignal, nullptr);
    delegate.application(application, std::nullopt);

    RunLoop loop = RunLoop::current();
    auto window = loadMainScreen();
    const auto controller = window->rootViewController();
    Activity activity(application);
    window->onCloseRequest = [&] { application.terminate(); };
    window->onActiveChange = [&](bool active) { activity.set(active); };
    afterFirstFrame(widgetOf(*window), [toolkitWindow = GTK_WINDOW(widgetOf(*window))] {
        traceFirstFrame();
        showIcon(toolkitWindow, product::Identifier);
    });

    controller->viewWillAppear(false);
    window->makeKeyAndVisible();
    controller->viewDidAppear(false);
    activity.set(true);
    loop.runUntil([&] { return application.isTerminating(); }, std::numeric_limits<double>::infinity());

    window->onActiveChange = nullptr;
    activity.set(false);
    controller->dismissViewControllerAnimated(false, nullptr);
    controller->viewWillDisappear(false);
    window->close();
    controller->viewDidDisappear(false);
    delegate.applicationDidEnterBackground(application);
    delegate.applicationWillTerminate(application);
    prepareForTermination();
    return 0;
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the tests of screens share: a started toolkit, windows that are really shown, a bundle of one's own.
#pragma once

#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/Bundle.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/toolkit/startToolkit.hpp"
#include "platform/ui/widgets.hpp"
#include "tests/support/testing.hpp"

#include <gtk/gtk.h>

namespace platform::testing {

/// Runs the main loop until `done`, also if another thread brings it about without waking the loop, or until
/// twenty seconds have passed.
inline bool waitFor(const std::function<bool()>& done) {
    for (int turn = 0; turn < 2000; ++turn) {
        if (RunLoop::current().runUntil(done, 0.01)) return true;
    }
    return false;
}

/// Starts the toolkit before the first test.
class ToolkitTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        static const bool started = [] {
            startToolkit();
            return true;
        }();
        (void)started;
    }
};

/// A controller that takes the view it is given.
class PlainController final : public UIViewController {
  public:
    PlainController() = default;
    void viewDidLayoutSubviews() override {
        ++layouts;
        if (onLayout) onLayout();
    }
    int layouts = 0;
    std::function<void()> onLayout;
};

/// A window on the screen, filled by a plain view.
struct ShownWindow {
    ShownWindow(int width, int height) {
        controller->setView(view);
        window->setRootViewController(controller);
        window->makeKeyAndVisible();
        resize(width, height);
    }
    ~ShownWindow() { window->close(); }
    ShownWindow(const ShownWindow&) = delete;
    ShownWindow& operator=(const ShownWindow&) = delete;

    void resize(int width, int height) const {
        gtk_window_set_default_size(GTK_WINDOW(widgetOf(*window)), width, height);
        const CGRect wanted{0, 0, static_cast<double>(width), static_cast<double>(height)};
        EXPECT_TRUE(waitFor([&] { return view->bounds() == wanted; }));
    }

    std::shared_ptr<UIWindow> window = std::make_shared<UIWindow>();
    std::shared_ptr<PlainController> controller = std::make_shared<PlainController>();
    std::shared_ptr<UIView> view = std::make_shared<UIView>();
};

/// A bundle in a folder of its own, removed at the end.
class TemporaryBundle {
  public:
    void add(const std::string& file, const std::string& content) const {
        (void)_root.file("share/tonewright/" + file, content);
    }
    [[nodiscard]] Bundle bundle() const { return Bundle(_root / "bin"); }

  private:
    tonewright::test::Scratch _root;
};

} // namespace platform::testing

namespace platform {

inline void PrintTo(const CGRect& rect, std::ostream* stream) {
    *stream << '(' << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ')';
}

} // namespace platform

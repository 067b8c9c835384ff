// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by the tests of screens: an initialised GTK, windows that are really shown, and temporary bundles.
#pragma once

#include "platform/foundation/Bundle.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/toolkit/startToolkit.hpp"
#include "platform/ui/widgets.hpp"
#include "tests/support/waitFor.hpp"

#include <gtk/gtk.h>

namespace platform::testing {

using tonewright::test::waitFor;

/// Initialises GTK before the first test.
class ToolkitTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        GTEST_FLAG_SET(death_test_style,
                       "threadsafe"); // a forked process lacks GTK's threads
        static const bool started = [] {
            ::setenv("GTK_A11Y", "test", 1); // makes the accessible properties readable
            startToolkit();
            return true;
        }();
        (void)started;
    }
};

/// A controller that uses the view passed to setView.
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
struct ShownWindow : tonewright::test::Uncopied {
    ShownWindow(int width, int height) {
        controller->setView(view);
        window->setRootViewController(controller);
        window->makeKeyAndVisible();
        resize(width, height);
    }
    ~ShownWindow() { window->close(); }

    void resize(int width, int height) const {
        gtk_window_set_default_size(GTK_WINDOW(widgetOf(*window)), width, height);
        const CGRect wanted{0, 0, static_cast<double>(width), static_cast<double>(height)};
        EXPECT_TRUE(waitFor([&] { return view->bounds() == wanted; }));
    }

    std::shared_ptr<UIWindow> window = std::make_shared<UIWindow>();
    std::shared_ptr<PlainController> controller = std::make_shared<PlainController>();
    std::shared_ptr<UIView> view = std::make_shared<UIView>();
};

/// A bundle in a temporary folder.
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

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/fatal.hpp"
#include "platform/ui/UIButton.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"
#include "tests/ui/toolkitFixture.hpp"

namespace platform {
namespace {

using platform::testing::TemporaryBundle;
using platform::testing::waitFor;
using InterfaceTest = platform::testing::ToolkitTest;

constexpr const char* Screen = R"(<interface>
  <object class="TonewrightView" id="view"><property name="controller-class">TestController</property>
    <child><object class="GtkBox"><layout><property name="fill">1</property></layout>
      <child><object class="TonewrightView" id="panel"/></child>
      <child><object class="GtkButton" id="button"><signal name="clicked" handler="onPress:"/></object></child>
      <child><object class="GtkButton" id="stray"><signal name="clicked" handler="onNothing:"/></object></child>
    </object></child>
  </object></interface>)";

class TestController : public UIViewController {
  public:
    using UIViewController::UIViewController;
    void viewDidLoad() override { loadedWithOutlets = panel && button; }

    std::shared_ptr<UIView> panel;
    std::shared_ptr<UIButton> button, missing;
    std::shared_ptr<UIResponder> sender;
    std::shared_ptr<UIButton> panelAsButton;
    int presses = 0;
    bool loadedWithOutlets = false;

  protected:
    void offerConnections(InterfaceConnections& connections) override {
        connections.outlet("panel", panel);
        connections.outlet("button", button);
        connections.outlet("missing", missing);
        connections.action("onPress:", this, &TestController::onPress);
    }

  private:
    void onPress(const std::shared_ptr<UIResponder>& from) {
        ++presses;
        sender = from;
    }
};

class MisfitController final : public TestController {
  public:
    using TestController::TestController;

  protected:
    void offerConnections(InterfaceConnections& connections) override {
        connections.outlet("panel", panelAsButton);
    }
};

template <class Controller = TestController>
std::shared_ptr<Controller> loaded(const TemporaryBundle& files) {
    const Bundle bundle = files.bundle();
    auto controller = std::make_shared<Controller>("Screen", &bundle);
    (void)controller->view();
    return controller;
}

TEST_F(InterfaceTest, ConnectsOutletsAndActionsByName) {
    TemporaryBundle files;
    files.add("Screen.ui", Screen);
    ::testing::internal::CaptureStderr();
    const auto controller = loaded(files);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "The action \"onNothing:\" in \"Screen.ui\" is unknown to its controller.\n");
    EXPECT_TRUE(controller->loadedWithOutlets) << "outlets are set before viewDidLoad";
    controller->button->press();
    EXPECT_EQ(controller->presses, 1);
    EXPECT_EQ(controller->sender, controller->button);
    GtkWidget* box = gtk_widget_get_first_child(widgetOf(*controller->view()));
    g_signal_emit_by_name(gtk_widget_get_last_child(box), "clicked"); // the stray button does nothing
    EXPECT_EQ(controller->presses, 1);

    EXPECT_TRUE(controller->canPerformAction("onPress:", nullptr));
    EXPECT_FALSE(controller->canPerformAction("onNothing:", nullptr));
    const auto child = std::make_shared<UIViewController>();
    controller->addChildViewController(child);
    EXPECT_TRUE(child->canPerformAction("onPress:", nullptr)) << "the parent performs the action";
}

TEST_F(InterfaceTest, OutletThatIsMissingOrFitsNotIsAbsentAndFatalWhenUsed) {
    TemporaryBundle files;
    files.add("Screen.ui", Screen);
    ::testing::internal::CaptureStderr();
    const auto controller = loaded(files);
    const auto misfit = loaded<MisfitController>(files);
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("\"panel\" in \"Screen.ui\" has the wrong class"),
              std::string::npos);
    EXPECT_EQ(misfit->panelAsButton, nullptr);
    EXPECT_EQ(controller->missing, nullptr);
    EXPECT_DEATH(unwrap(controller->missing).setHidden(true),
                 "Unexpectedly found nil while implicitly unwrapping an Optional value");
}

TEST_F(InterfaceTest, DescriptionThatCannotBeReadGivesNothing) {
    TemporaryBundle files;
    files.add("Broken.ui", "<interface><object class=\"NoSuchWidget\"/></interface>");
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(InterfaceDescription::load("Absent", files.bundle()), nullptr);
    EXPECT_EQ(InterfaceDescription::load("Broken", files.bundle()), nullptr);
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("\"Absent.ui\" is not among the resources"), std::string::npos);
    EXPECT_NE(said.find("NoSuchWidget"), std::string::npos);
}

// When a focused control is hidden, the control that takes its place gets the focus.
TEST_F(InterfaceTest, FocusStaysInThePlaceOfAHiddenButton) {
    TemporaryBundle files;
    files.add("Pair.ui", R"(<interface><object class="TonewrightView" id="view"><child>
        <object class="GtkBox"><layout><property name="fill">1</property></layout>
          <child><object class="GtkBox">
            <child><object class="GtkButton" id="button"><property name="label">one</property></object></child>
            <child><object class="GtkButton" id="missing"><property name="visible">0</property></object></child>
          </object></child>
          <child><object class="GtkButton"><property name="label">other</property></object></child>
        </object></child></object></interface>)");
    const Bundle bundle = files.bundle();
    const auto controller = std::make_shared<TestController>("Pair", &bundle);
    const auto window = std::make_shared<UIWindow>();
    window->setRootViewController(controller);
    window->makeKeyAndVisible();
    auto* root = GTK_ROOT(widgetOf(*window));
    const auto hasFocus = [&](const UIView& view) { return gtk_root_get_focus(root) == widgetOf(view); };
    gtk_widget_grab_focus(widgetOf(*controller->button));
    ASSERT_TRUE(hasFocus(*controller->button));
    // Hides one and shows the other, in either order.
    controller->button->setHidden(true);
    controller->missing->setHidden(false);
    EXPECT_TRUE(waitFor([&] { return hasFocus(*controller->missing); }));
    controller->button->setHidden(false);
    controller->missing->setHidden(true);
    EXPECT_TRUE(waitFor([&] { return hasFocus(*controller->button); }));
    window->close();
}

} // namespace
} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests presenting and dismissing screens, and segues.
#include "platform/foundation/console.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/UIApplicationDelegate.hpp"
#include "platform/ui/UIButton.hpp"
#include "platform/ui/UIStoryboardSegue.hpp"
#include "platform/ui/classRegistry.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"
#include "tests/ui/toolkitFixture.hpp"

namespace platform {
namespace {

using platform::testing::TemporaryBundle;
using platform::testing::waitFor;
using PresentationTest = platform::testing::ToolkitTest;

std::vector<std::string>& story() {
    static std::vector<std::string> events;
    return events;
}

constexpr const char* First = R"(<interface>
  <object class="TonewrightSegue" id="next"><property name="destination">Second</property></object>
  <object class="TonewrightSegue" id="astray"><property name="destination">Nowhere</property></object>
  <object class="TonewrightView" id="view"><property name="controller-class">StoryController</property>
    <child><object class="GtkBox">
      <child><object class="GtkButton" id="plain"/></child>
      <child><object class="GtkButton" id="button"><signal name="clicked" handler="next"/></object></child>
    </object></child>
  </object></interface>)";
constexpr const char* Second = R"(<interface>
  <object class="TonewrightView" id="view"><property name="controller-class">StoryController</property>
    <child><object class="GtkButton" id="button"/></child>
  </object></interface>)";

class StoryController final : public UIViewController {
  public:
    using UIViewController::UIViewController;
    static std::shared_ptr<StoryController> initWithCoder(const NSCoder& coder) {
        return canDecode(coder) ? std::make_shared<StoryController>(coder) : nullptr;
    }
    void viewDidLoad() override { note("loaded"); }
    void viewWillAppear(bool) override { note("will appear"); }
    void viewDidAppear(bool) override { note("appeared"); }
    void viewWillDisappear(bool) override { note("will disappear"); }
    void viewDidDisappear(bool) override { note("disappeared"); }
    void prepare(const UIStoryboardSegue& segue, const std::shared_ptr<UIResponder>& sender) override {
        EXPECT_EQ(segue.sourceViewController().get(), this);
        EXPECT_EQ(sender, button);
        EXPECT_FALSE(segue.destinationViewController()->isViewLoaded());
        note("prepares " + segue.identifier().value_or("nothing"));
        std::static_pointer_cast<StoryController>(segue.destinationViewController())->name = "second";
    }

    std::string name = "first";
    std::shared_ptr<UIButton> button;

  protected:
    void offerConnections(InterfaceConnections& connections) override {
        connections.outlet("button", button);
    }

  private:
    void note(const std::string& event) const { story().push_back(name + " " + event); }
};

// Reports its calls on standard error, and terminates the application when it has become active.
class TellingDelegate final : public UIApplicationDelegate {
  public:
    void setWindow(std::shared_ptr<UIWindow>) override { warn("setWindow"); }
    bool application(UIApplication&, const std::optional<LaunchOptions>&) override {
        warn("launched");
        return true;
    }
    void applicationDidBecomeActive(UIApplication& application) override {
        warn("active");
        application.terminate();
    }
    void applicationWillResignActive(UIApplication&) override { warn("inactive"); }
    void applicationDidEnterBackground(UIApplication&) override { warn("background"); }
    void applicationWillTerminate(UIApplication&) override {
        for (const auto& event : story()) warn(event);
        warn("end");
    }
};

[[noreturn]] void runApplication() {
    registerClass<TellingDelegate>("TellingDelegate");
    registerClass<StoryController>("ViewController"); // replaces the main screen's controller
    std::string name = "test";
    std::array<char*, 2> arguments{name.data(), nullptr};
    std::exit(UIApplicationMain(1, arguments.data(), std::nullopt, "TellingDelegate"));
}

TEST_F(PresentationTest, ApplicationTellsItsDelegateAndItsScreenInOrder) {
    EXPECT_EXIT(runApplication(), ::testing::ExitedWithCode(0),
                "launched\nsetWindow\n.*active\ninactive\nbackground\nfirst loaded\nfirst will appear\nfirst "
                "appeared\n"
                "first will disappear\nfirst disappeared\nend\n");
}

TEST_F(PresentationTest, SegueBringsANewScreenEachTimeAndDismissalTheOldOneBack) {
    registerClass<StoryController>("StoryController");
    TemporaryBundle files;
    files.add("First.ui", First);
    files.add("Second.ui", Second);
    const Bundle bundle = files.bundle();
    const auto first = std::make_shared<StoryController>("First", &bundle);
    const auto window = std::make_shared<UIWindow>();
    window->setRootViewController(first);
    window->makeKeyAndVisible();
    auto* root = GTK_WINDOW(widgetOf(*window));
    gtk_widget_grab_focus(widgetOf(*first->button));

    std::weak_ptr<UIViewController> before;
    for (int round = 0; round < 2; ++round) {
        story().clear();
        first->button->press();
        const auto second = first->presentedViewController();
        ASSERT_NE(second, nullptr);
        EXPECT_TRUE(before.expired()) << "the previous screen still exists";
        EXPECT_EQ(second->presentingViewController(), first);
        EXPECT_EQ(gtk_window_get_child(root), widgetOf(*second->view()));
        EXPECT_EQ(gtk_window_get_focus(root),
                  widgetOf(*std::static_pointer_cast<StoryController>(second)->button));
        EXPECT_EQ(story(),
                  (std::vector<std::string>{"first prepares next", "second loaded", "second will appear",
                                            "first will disappear", "second appeared", "first disappeared"}));
        story().clear();
        bool ended = false;
        second->dismissViewControllerAnimated(true, [&] { ended = true; });
        EXPECT_FALSE(ended) << "the completion runs after the call";
        EXPECT_TRUE(waitFor([&] { return ended; }));
        EXPECT_EQ(story(), (std::vector<std::string>{"second will disappear", "first will appear",
                                                     "second disappeared", "first appeared"}));
        EXPECT_EQ(gtk_window_get_child(root), widgetOf(*first->view()));
        EXPECT_EQ(gtk_window_get_focus(root), widgetOf(*first->button)) << "the focus returns";
        before = second;
    }
    EXPECT_EQ(makeController("NobodyController", NSCoder(InterfaceDescription::load("Second", bundle))),
              nullptr);
    first->dismissViewControllerAnimated(true, [] { FAIL() << "there was nothing to dismiss"; });
    EXPECT_DEATH(first->performSegueWithIdentifier("unknown", nullptr),
                 "no segue with the identifier \"unknown\"");
    EXPECT_DEATH(first->performSegueWithIdentifier("astray", nullptr), "\"astray\" leads to no screen");
    window->close();
}

} // namespace
} // namespace platform

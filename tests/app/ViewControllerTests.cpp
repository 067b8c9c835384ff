// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The main screen with its real interface description in a real window, on the offline device and with an
// effect that lives in the test.
#include "app/interface/ViewController.hpp"

#include "app/Audio Engine/AUExtensionManager.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"
#include "tests/support/InProcessEffect.hpp"
#include "tests/support/revealed.hpp"
#include "tests/ui/toolkitFixture.hpp"

namespace tonewright {

namespace test {

struct ManagerOfScreen {
    friend auto revealed(ManagerOfScreen);
};
struct EffectController {
    friend auto revealed(EffectController);
};
struct ResetPluginView {
    friend auto revealed(ResetPluginView);
};
struct EmbedPlugInView {
    friend auto revealed(EmbedPlugInView);
};
template struct Reveal<ManagerOfScreen, &ViewController::audioUnitManager>;
template struct Reveal<EffectController, &ViewController::audioUnitViewController>;
template struct Reveal<ResetPluginView, &ViewController::resetPluginView>;
template struct Reveal<EmbedPlugInView, &ViewController::embedPlugInView>;

} // namespace test

struct ViewControllerProbe {
    ViewController& screen;

    [[nodiscard]] std::shared_ptr<AUExtensionManager>& manager() const {
        return screen.*revealed(test::ManagerOfScreen());
    }
    [[nodiscard]] std::shared_ptr<platform::UIViewController>& effectController() const {
        return screen.*revealed(test::EffectController());
    }
    void resetPluginView(double w, double h) const { (screen.*revealed(test::ResetPluginView()))(w, h); }
    void embedPlugInView() const { (screen.*revealed(test::EmbedPlugInView()))(); }
};

namespace test {
namespace {

using platform::CGRect;
using platform::UIView;
using platform::UIViewController;
using platform::testing::waitFor;

constexpr const char* Loading = "ViewController: Loading the audio unit's interface...";
constexpr const char* NoView =
    "ERROR: Something is wrong with the view controller and view of the audio unit.";

/// Counts the toggles instead of playing; it searches for effects like any manager.
class CountingManager final : public AUExtensionManager {
  public:
    CountingManager()
        : AUExtensionManager(nullptr) {}
    bool togglePlayback() override { return ++toggles % 2 == 1; }
    int toggles = 0;
};

class ViewControllerTest : public platform::testing::ToolkitTest {
  protected:
    ViewControllerTest() {
        platform::setSharedOutputDevice(std::make_shared<platform::OfflineDevice>());
        InProcessProvider::install(std::make_shared<InProcessProvider>());
        const auto description = platform::InterfaceDescription::load("Main", platform::Bundle::main());
        window = platform::unwrap(description).window();
        screen = ViewController::initWithCoder(platform::NSCoder(description));
        window->setRootViewController(screen);
        // The search at the start finds nothing and ends with one line.
        EXPECT_TRUE(waitFor([&] { return output.lines().size() >= 5; }));
        (void)output.take();
    }
    ~ViewControllerTest() override {
        window->close();
        ViewControllerProbe{*screen}.manager() =
            nullptr; // the screen, the manager and the player own one another
        InProcessProvider::install(nullptr);
        platform::setSharedOutputDevice(nullptr);
    }

    void showAt(int width, int height) const {
        window->makeKeyAndVisible();
        gtk_window_set_default_size(GTK_WINDOW(platform::widgetOf(*window)), width, height);
        EXPECT_TRUE(waitFor([&] {
            return screen->view()->bounds() == CGRect{0, 0, double(width), double(height)};
        }));
    }

    using Answer = InProcessEffect::Answer;
    /// Makes a unit that passes on how it is asked for its interface.
    static std::shared_ptr<platform::AVAudioUnit> unitAsked(std::function<void(Answer)> onViewRequest) {
        const auto effect = std::make_shared<InProcessEffect>();
        effect->onViewRequest = std::move(onViewRequest);
        return makeUnit(effect);
    }

    CapturedOutput output;
    std::shared_ptr<platform::UIWindow> window;
    std::shared_ptr<ViewController> screen;
};

TEST_F(ViewControllerTest, PlayStateDecidesWhichButtonIsSeenAndBothToggle) {
    for (const bool playing : {true, true, false, false, true, false}) {
        screen->onPlayerStateChanged(playing);
        EXPECT_EQ(screen->playButton->isHidden(), playing);
        EXPECT_EQ(screen->stopButton->isHidden(), !playing);
    }
    EXPECT_TRUE(output.take().empty());
    const auto manager = std::make_shared<CountingManager>();
    ViewControllerProbe{*screen}.manager() = manager;
    screen->stopButton->press(); // Stop starts playback if nothing plays
    EXPECT_EQ(manager->toggles, 1);
    screen->playButton->press();
    EXPECT_EQ(manager->toggles, 2);
    for (const char* action : {"onButtonUnit:", "onPlayButton:", "onStopButton:"}) {
        EXPECT_TRUE(screen->canPerformAction(action, nullptr)) << action;
    }
    EXPECT_FALSE(screen->canPerformAction("onNothing:", screen));
}

TEST_F(ViewControllerTest, EffectsViewFillsThePanelAndFollowsItWhileHidden) {
    showAt(700, 500);
    const auto effectController = std::make_shared<platform::testing::PlainController>();
    const auto effectView = std::make_shared<UIView>(CGRect{0, 0, 40, 30});
    effectController->setView(effectView);
    screen->onFoundComponent(unitAsked([&](const auto& completion) { completion(effectController); }));
    EXPECT_EQ(output.take(), Lines{Loading});
    EXPECT_EQ(effectView->superview(), screen->pluginView);
    EXPECT_EQ(effectController->parentViewController(), screen);
    EXPECT_EQ(effectView->frame(), screen->pluginView->bounds());
    EXPECT_GT(effectView->frame().width, 0);
    for (const auto& [width, height] : {std::pair{900, 650}, {560, 420}}) {
        showAt(width, height);
        EXPECT_EQ(effectView->frame(), screen->pluginView->bounds());
        EXPECT_EQ(effectView->frame().width, width);
        EXPECT_TRUE(screen->pluginView->isHidden());
    }
}

TEST_F(ViewControllerTest, FailuresOfTheEffectsInterfaceAreOneLine) {
    const auto withoutView = std::make_shared<UIViewController>();
    screen->onFoundComponent(nullptr);
    EXPECT_EQ(output.take(),
              (Lines{Loading, "ERROR: The audio unit is not initialized to load the user interface."}));
    for (const auto& given : {std::shared_ptr<UIViewController>(), withoutView}) {
        screen->onFoundComponent(unitAsked([&](const auto& completion) { completion(given); }));
        EXPECT_EQ(output.take(), (Lines{Loading, NoView}));
    }
    EXPECT_TRUE(screen->pluginView->subviews().empty());
    EXPECT_TRUE(screen->childViewControllers().empty());
}

TEST_F(ViewControllerTest, InterfaceThatComesAfterTheScreenIsGoneIsSaid) {
    Answer later;
    auto brief = std::make_shared<ViewController>(std::nullopt);
    const std::weak_ptr<ViewController> gone = brief;
    brief->onFoundComponent(unitAsked([&](auto completion) { later = std::move(completion); }));
    brief.reset();
    ASSERT_TRUE(gone.expired()) << "the request keeps the screen alive";
    (void)output.take();
    later(std::make_shared<UIViewController>());
    EXPECT_EQ(output.take(), Lines{"ERROR: Self is nil !?"});
}

TEST_F(ViewControllerTest, SquareCoversTheScreenOnceThereIsAnEffectController) {
    const ViewControllerProbe probe{*screen};
    showAt(600, 500);
    const CGRect before = screen->pluginView->frame();
    screen->centerPluginView();
    EXPECT_EQ(output.take(), Lines{"WARNING: Cannot reset the pluginview (yet)."});
    EXPECT_EQ(screen->pluginView->frame(), before);

    probe.effectController() = std::make_shared<platform::testing::PlainController>();
    const auto effectView = std::make_shared<UIView>();
    probe.effectController()->setView(effectView);
    using Case = std::tuple<double, double, CGRect>;
    for (const auto& [width, height, panel] :
         {Case{600, 500, {0, -50, 600, 600}},
          Case{300, 500, {50, 0, 500, 500}}, // centred on the view's width
          Case{500, 500, {0, 0, 500, 500}}}) {
        probe.resetPluginView(width, height);
        EXPECT_EQ(screen->pluginView->frame(), panel);
        EXPECT_EQ(effectView->frame(), (CGRect{0, 0, panel.width, panel.height}));
    }
    showAt(480, 640);
    screen->centerPluginView();
    EXPECT_EQ(screen->pluginView->frame(), (CGRect{-80, 0, 640, 640}));
    probe.resetPluginView(std::nan(""), 500); // NaN takes the branch for the wide screen
    EXPECT_EQ(screen->pluginView->frame().x, 0);
    EXPECT_TRUE(std::isnan(screen->pluginView->frame().width));
    probe.effectController() = std::make_shared<platform::testing::PlainController>();
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(probe.resetPluginView(1, 2),
                 "Unexpectedly found nil while implicitly unwrapping an Optional value");
}

TEST_F(ViewControllerTest, WhatTheFolderChooserAnswersIsOnlySaid) {
    platform::UIDocumentPickerViewController picker({"public.folder"}, platform::UIDocumentPickerMode::Open);
    const auto music = platform::URL::fileURLWithPath("/tmp/My Müsic", true);
    screen->documentPicker(picker, music);
    EXPECT_EQ(output.take(), Lines{"documentPicker (didPickDocumentAt): /tmp/My Müsic"});
    screen->documentPicker(picker, std::vector{music});
    EXPECT_EQ(output.take().front(), "documentPicker: [file:///tmp/My%20M%C3%BCsic/]");
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(screen->documentPicker(picker, std::vector<platform::URL>{}),
                 "Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(ViewControllerTest, WhatMustBeThereIsFatalWhenItIsNot) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    constexpr const char* Nil = "Unexpectedly found nil while implicitly unwrapping an Optional value";
    EXPECT_DEATH(ViewControllerProbe{*screen}.embedPlugInView(),
                 "ERROR: Could not load audio unit's view controller.");
    const auto bare = std::make_shared<ViewController>(std::nullopt);
    EXPECT_DEATH(bare->viewDidLoad(), Nil);
    EXPECT_DEATH(bare->onButtonUnit(nullptr), Nil);
    EXPECT_DEATH(bare->onPlayButton(nullptr), Nil);
    EXPECT_DEATH(bare->onStopButton(nullptr), Nil);
    EXPECT_DEATH(bare->onPlayerStateChanged(true), Nil);
    EXPECT_EQ(ViewController::initWithCoder(platform::NSCoder(nullptr)), nullptr);
}

} // namespace
} // namespace test
} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the main screen with its interface description in a real window, on the offline device and with an
// effect implemented by the test. Its dialogs are operated with real keys and clicks.
#include "app/interface/ViewController.hpp"

#include "app/Audio Engine/AUExtensionManager.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/ui/GObjectRef.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"
#include "tests/support/InProcessEffect.hpp"
#include "tests/support/revealed.hpp"
#include "tests/ui/toolkitFixture.hpp"

#include <gdk/x11/gdkx.h>

namespace tonewright::test {

struct Manager {
    friend auto revealed(Manager);
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
template struct Reveal<Manager, &ViewController::audioUnitManager>;
template struct Reveal<EffectController, &ViewController::audioUnitViewController>;
template struct Reveal<ResetPluginView, &ViewController::resetPluginView>;
template struct Reveal<EmbedPlugInView, &ViewController::embedPlugInView>;

namespace {

using platform::CGRect;
using platform::UIView;
using platform::UIViewController;
using platform::testing::waitFor;

constexpr const char* Loading = "ViewController: Loading the audio unit's interface...";
constexpr const char* Confirmed = "Alert was confirmed.";
constexpr const char* Canceled = "Alert was canceled.";
constexpr const char* NoView =
    "ERROR: Something is wrong with the view controller and view of the audio unit.";

/// Counts toggles instead of playing; searches for effects like any manager.
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
        *screen.*revealed(Manager()) = nullptr; // breaks the cycle of screen, manager and player
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
    /// Returns a unit that forwards requests for its interface to `onViewRequest`.
    static std::shared_ptr<platform::AVAudioUnit> unitAsked(std::function<void(Answer)> onViewRequest) {
        const auto effect = std::make_shared<InProcessEffect>();
        effect->onViewRequest = std::move(onViewRequest);
        return nodeOf(effect);
    }

    /// Waits until `count` dialogs are on the screen, and returns the last one.
    GtkWindow* dialog(int count = 1) const {
        GtkWindow* last = nullptr;
        EXPECT_TRUE(waitFor([&] {
            int seen = 0;
            GListModel* windows = gtk_window_get_toplevels();
            for (guint i = 0; i < g_list_model_get_n_items(windows); ++i) {
                const auto one = platform::GObjectRef<GtkWindow>::adopt(
                    static_cast<GtkWindow*>(g_list_model_get_item(windows, i)));
                if (gtk_window_get_transient_for(one.get()) == nullptr) continue;
                if (gtk_widget_get_width(GTK_WIDGET(one.get())) > 0) last = one.get(), ++seen;
            }
            return seen == count;
        }));
        return last;
    }
    /// Gives a dialog the keyboard focus, as a window manager does, and runs xdotool with `commands`, in
    /// which $W is the dialog's window.
    static void input(GtkWindow* dialog, const std::string& commands) {
        const auto window = gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(dialog)));
        const std::string focus = "W=" + std::to_string(window) + "; xdotool windowfocus --sync $W ";
        ASSERT_EQ(std::system(focus.c_str()), 0);
        EXPECT_TRUE(waitFor([&] { return gtk_window_is_active(dialog) != FALSE; }));
        ASSERT_EQ(std::system((focus + commands).c_str()), 0);
    }
    /// Runs the main loop until `lines` have been printed, and expects no other lines.
    void expectLines(const Lines& lines) {
        EXPECT_TRUE(waitFor([&] { return output.lines().size() >= lines.size(); }));
        EXPECT_EQ(output.take(), lines);
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
    *screen.*revealed(Manager()) = manager;
    screen->stopButton->press(); // Stop starts playback if nothing is playing
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
    auto* panel = GTK_ACCESSIBLE(platform::widgetOf(*screen->pluginView));
    EXPECT_EQ(gtk_accessible_get_accessible_role(panel), GTK_ACCESSIBLE_ROLE_GROUP);
    EXPECT_EQ(gtk_test_accessible_check_property(panel, GTK_ACCESSIBLE_PROPERTY_LABEL, "Effect"), nullptr);
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
    const auto reset = [&](double width, double height) {
        (*screen.*revealed(ResetPluginView()))(width, height);
    };
    auto& effectController = *screen.*revealed(EffectController());
    showAt(600, 500);
    const CGRect before = screen->pluginView->frame();
    screen->centerPluginView();
    EXPECT_EQ(output.take(), Lines{"WARNING: Cannot reset the pluginview (yet)."});
    EXPECT_EQ(screen->pluginView->frame(), before);

    effectController = std::make_shared<platform::testing::PlainController>();
    const auto effectView = std::make_shared<UIView>();
    effectController->setView(effectView);
    using Case = std::tuple<double, double, CGRect>;
    for (const auto& [width, height, panel] :
         {Case{600, 500, {0, -50, 600, 600}},
          Case{300, 500, {50, 0, 500, 500}}, // centred in the view's width
          Case{500, 500, {0, 0, 500, 500}}}) {
        reset(width, height);
        EXPECT_EQ(screen->pluginView->frame(), panel);
        EXPECT_EQ(effectView->frame(), (CGRect{0, 0, panel.width, panel.height}));
    }
    showAt(480, 640);
    screen->centerPluginView();
    EXPECT_EQ(screen->pluginView->frame(), (CGRect{-80, 0, 640, 640}));
    reset(std::nan(""), 500); // NaN takes the branch for the wide screen
    EXPECT_EQ(screen->pluginView->frame().x, 0);
    EXPECT_TRUE(std::isnan(screen->pluginView->frame().width));
    effectController = std::make_shared<platform::testing::PlainController>();
    EXPECT_DEATH(reset(1, 2), "Unexpectedly found nil while implicitly unwrapping an Optional value");
}

TEST_F(ViewControllerTest, WhatTheFolderChooserAnswersIsOnlySaid) {
    platform::UIDocumentPickerViewController picker({"public.folder"}, platform::UIDocumentPickerMode::Open);
    const auto music = platform::URL::fileURLWithPath("/tmp/My Müsic", true);
    screen->documentPicker(picker, music);
    EXPECT_EQ(output.take(), Lines{"documentPicker (didPickDocumentAt): /tmp/My Müsic"});
    screen->documentPicker(picker, std::vector{music, platform::URL::fileURLWithPath("/b", true)});
    EXPECT_EQ(output.take().front(), "documentPicker: [file:///tmp/My%20M%C3%BCsic/, file:///b/]");
    EXPECT_DEATH(screen->documentPicker(picker, std::vector<platform::URL>{}),
                 "Unexpectedly found nil while unwrapping an Optional value");
}

TEST_F(ViewControllerTest, AlertsOfEveryTextAreAnsweredInEveryWay) {
    showAt(600, 500);
    const std::string endless(100'000, 'W');
    const std::tuple<std::string, std::string, std::string, const char*> cases[] = {
        {"T", "M", "key Return", Confirmed},
        {"", "", "key Escape", Canceled},
        {"Only a title", "", "", Canceled}, // closed by its window
        {"two\nlines", "<b>no</b> &markup; _x %s %n\tü \u202e 漢 🎛", "OK", Confirmed},
        {endless, "line of text\n" + endless, "Cancel", Canceled}};
    for (const auto& [title, message, way, line] : cases) {
        SCOPED_TRACE(title.substr(0, 20));
        screen->alertMessage(title, message);
        std::string said;
        for (const auto& part : output.take()) said += part + "\n";
        EXPECT_EQ(said, title + ": " + message + "\n");
        GtkWindow* alert = dialog();
        const int width = gtk_widget_get_width(GTK_WIDGET(alert));
        const int height = gtk_widget_get_height(GTK_WIDGET(alert));
        EXPECT_TRUE(width < 1400 && height < 1000);
        if (title == "T") {
            auto* accessible = GTK_ACCESSIBLE(alert);
            EXPECT_EQ(gtk_test_accessible_check_property(accessible, GTK_ACCESSIBLE_PROPERTY_LABEL, "T"),
                      nullptr);
            EXPECT_EQ(
                gtk_test_accessible_check_property(accessible, GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, "M"),
                nullptr);
        }
        if (way.empty()) {
            gtk_window_close(alert);
        } else if (way.starts_with("key")) {
            input(alert, way);
        } else { // OK is the left half of the row of buttons
            input(alert, "mousemove --window $W " + std::to_string(way == "OK" ? width / 4 : width * 3 / 4) +
                             " " + std::to_string(height - 24) + " click 1");
        }
        expectLines({line});
        (void)dialog(0);
    }
}

TEST_F(ViewControllerTest, SeveralAlertsAreAnsweredOneByOneOrEndWithTheScreen) {
    showAt(600, 500);
    for (int number = 0; number < 3; ++number) screen->alertMessage(std::to_string(number), "M");
    expectLines({"0: M", "1: M", "2: M"});
    input(dialog(3), "key Return");
    expectLines({Confirmed});
    input(dialog(2), "key Escape");
    expectLines({Canceled});
}

TEST_F(ViewControllerTest, FolderIsChosenByItsPathOrNoneIs) {
    showAt(600, 500);
    // GTK 4.8 lists every folder on the way while a path is typed, and leaks the names of files that
    // disappear from such a list. A path from "~" does not lead through the temporary directory, where other
    // tests create and remove files.
    const std::string path = std::string(g_get_home_dir()) + "/Documents";
    const std::pair<std::string, Lines> cases[] = {
        {"type '~/Documents'",
         {"documentPicker: [file://" + path + "/]", "documentPicker (didPickDocumentsAt): " + path}},
        {"key Escape", {"The document picker was canceled."}},
        {"", {"The document picker was canceled."}}};
    ::setenv("LANGUAGE", "de", 1);
    for (const auto& [way, lines] : cases) {
        screen->openFilePicker();
        GtkWindow* chooser = dialog();
        EXPECT_STREQ(gtk_window_get_title(chooser), "Ordner auswählen");
        EXPECT_FALSE(gtk_file_chooser_get_select_multiple(GTK_FILE_CHOOSER(chooser)));
        way.empty() ? gtk_window_close(chooser) : input(chooser, way);
        if (way.starts_with("type")) input(chooser, "key Return");
        expectLines(lines);
        (void)dialog(0);
    }
    ::unsetenv("LANGUAGE");
}

TEST_F(ViewControllerTest, PagesGoToTheDesktop) {
    const Scratch folder;
    const std::string tool = folder.file("xdg-open"), path = std::getenv("PATH");
    ::chmod(tool.c_str(), 0755);
    const std::string page = "https://tonewright.example/";
    const std::tuple<std::string, bool, bool> cases[] = {
        // the browser's script, whether it can be started, whether it fails
        {"echo noise\necho \"$@\" >" + folder.path() + "/asked\n", true, false},
        {"exec sleep 30 2>&-\n", true, false}, // a browser that keeps running
        {"exit 3\n", true, true},
        {"", false, true}};
    for (const auto& [script, starts, fails] : cases) {
        std::ofstream(tool) << "#!/bin/sh\n" << script;
        ::setenv("PATH", script.empty() ? "/nonexistent" : (folder.path() + ":" + path).c_str(), 1);
        ::testing::internal::CaptureStderr();
        std::optional<bool> answer;
        platform::UIApplication::shared().openURL(*platform::URL::fromString(page), {},
                                                  [&](bool success) { answer = success; });
        EXPECT_TRUE(waitFor([&] { return answer.has_value(); }));
        platform::RunLoop::current().runFor(0.3); // a failure is reported after the answer
        EXPECT_EQ(answer, starts) << script;
        const std::string said = ::testing::internal::GetCapturedStderr();
        EXPECT_EQ(said.find("could not be opened") != std::string::npos, fails) << script;
    }
    ::setenv("PATH", path.c_str(), 1);
    EXPECT_EQ(contentOf(folder / "asked"), page + "\n");
    expectLines({});
}

TEST_F(ViewControllerTest, WhatMustBeThereIsFatalWhenItIsNot) {
    constexpr const char* Nil = "Unexpectedly found nil while implicitly unwrapping an Optional value";
    EXPECT_DEATH((*screen.*revealed(EmbedPlugInView()))(),
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
} // namespace tonewright::test

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A program with the real main interface description and a controller that only tells what it hears, one line
// on standard output each. Tests work it with real keys and clicks.
#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/UIApplicationDelegate.hpp"
#include "platform/ui/UIButton.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/classRegistry.hpp"

#include <cstdlib>

namespace {

using namespace platform;

class ProbeController final : public UIViewController {
  public:
    explicit ProbeController(const NSCoder& coder)
        : UIViewController(coder) {}
    static std::shared_ptr<ProbeController> initWithCoder(const NSCoder& coder) {
        return std::make_shared<ProbeController>(coder);
    }

    void viewDidLoad() override {
        print("viewDidLoad");
        unwrap(_pluginView).setHidden(true);
        unwrap(_stopButton).setHidden(true);
    }
    void viewWillAppear(bool) override { print("viewWillAppear"); }
    void viewDidDisappear(bool) override { print("viewDidDisappear"); }

  protected:
    void offerConnections(InterfaceConnections& connections) override {
        connections.outlet("pluginView", _pluginView);
        connections.outlet("playButton", _playButton);
        connections.outlet("stopButton", _stopButton);
        connections.action("onButtonUnit:", this, &ProbeController::onButtonUnit);
        connections.action("onPlayButton:", this, &ProbeController::onToggle);
        connections.action("onStopButton:", this, &ProbeController::onToggle);
        connections.action("showHelp:", this, &ProbeController::onHelp);
    }

  private:
    void onButtonUnit(const std::shared_ptr<UIResponder>&) {
        const bool hidden = !unwrap(_pluginView).isHidden();
        unwrap(_pluginView).setHidden(hidden);
        print(hidden ? "panel hidden" : "panel shown");
    }
    void onToggle(const std::shared_ptr<UIButton>&) {
        _playing = !_playing;
        unwrap(_playButton).setHidden(_playing);
        unwrap(_stopButton).setHidden(!_playing);
        print(_playing ? "playing" : "stopped");
    }

    void onHelp(const std::shared_ptr<UIResponder>&) { print("help"); }

    std::shared_ptr<UIView> _pluginView;
    std::shared_ptr<UIButton> _playButton, _stopButton;
    bool _playing = false;
};

class ProbeDelegate final : public UIApplicationDelegate {
  public:
    void setWindow(std::shared_ptr<UIWindow> window) override { print(window ? "setWindow" : "no window"); }
    bool application(UIApplication&, const std::optional<LaunchOptions>&) override {
        print("didFinishLaunching");
        return true;
    }
    void applicationDidBecomeActive(UIApplication&) override { print("didBecomeActive"); }
    void applicationWillResignActive(UIApplication&) override { print("willResignActive"); }
    void applicationDidEnterBackground(UIApplication&) override { print("didEnterBackground"); }
    void applicationWillTerminate(UIApplication&) override { print("willTerminate"); }
};

} // namespace

int main(int argc, char** argv) {
    setApplicationIdentity({.help = "Usage: probe"});
    registerClass<ProbeDelegate>("ProbeDelegate");
    registerClass<ProbeController>("ViewController");
    return UIApplicationMain(argc, argv, std::nullopt, "ProbeDelegate");
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The gallery of the animation engine: all forty curves at once, a stack, a chain and a sequencer that use
// the chosen curve, and an impulse.
//
//   GalleryController   the screen: controls, clock, status line
//   CurveWall, Plot     the forty curves, on one stack
//   Exhibit             the interface of the four exhibits; each exhibit has its own file
//   Gallery.ui, .css    describe the window's controls
#include "gallery/GalleryController.hpp"
#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/UIApplicationDelegate.hpp"
#include "platform/ui/classRegistry.hpp"

namespace {

constexpr const char* Help = R"(Usage: tonewright-gallery [OPTION]

Watch the easing curves, stacks, chains, timelines and impulses of the animation engine.

  --help     show this text and exit
  --version  show the version and exit

Keys: P pauses, R restarts, + and - change the speed, F flicks the impulse. Tab and the arrow keys move from curve
to curve, Space selects a curve.)";

class GalleryDelegate final : public platform::UIApplicationDelegate {
  public:
    void setWindow(std::shared_ptr<platform::UIWindow> window) override { _window = std::move(window); }

  private:
    std::shared_ptr<platform::UIWindow> _window;
};

} // namespace

int main(int argc, char** argv) {
    platform::setApplicationIdentity({.programName = "tonewright-gallery",
                                      .displayName = "Tonewright Gallery",
                                      .interfaceName = "Gallery",
                                      .help = Help});
    platform::registerClass<GalleryDelegate>("GalleryDelegate");
    platform::registerClass<tonewright::GalleryController>("GalleryController");
    return platform::UIApplicationMain(argc, argv, std::nullopt, "GalleryDelegate");
}

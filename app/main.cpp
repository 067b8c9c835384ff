// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tonewright plays loops through one audio effect and shows the effect's own interface.
//
// A map of the tree, in the order in which a press of Play travels through it:
//
//   app/main.cpp             this file: hands the process to the platform
//   app/AppDelegate          accepts the launch
//   app/interface/           the main screen: ViewController, and Main.ui, which describes its controls
//   app/Audio Engine/        AUExtensionManager finds the effect; AUEnginePlayer plays loops through it
//   shared/HelpViewController/ the help screen, with the manual in a web view
//   shared/Common/           what does not know this application: text, paths, views, files, animation
//   platform/                the operating system's side under the names that app and shared use:
//     foundation/            URLs, files, the bundle of resources, lines on the console, the fatal error
//     dispatch/              queues of tasks and the run loop
//     audio/                 the engine's graph, its nodes, audio files, the session, output devices
//     effects/               the registry of components and the host of LV2 effects
//     ui/                    the application, views, controllers, interface descriptions
//     network/, web/         what the help screen and downloads need
//   gallery/                 a program of its own: the animation engine at work
//   effect/                  the effect that comes with the program, an LV2 bundle like any other
//   resources/               the recipes of the loops, the desktop's entry, icons
//   tests/, benches/         mirrors of the tree; one benchmark for each claim
//
// app and shared include the standard library and the headers of platform; what lies under platform stays
// there.
#include "app/AppDelegate.hpp"
#include "app/interface/ViewController.hpp"
#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/classRegistry.hpp"
#include "shared/HelpViewController/HelpViewController.hpp"

namespace {

constexpr const char* Help = R"(Usage: tonewright [OPTION]

Play loops through an audio effect and work the effect's own interface.

  --help     show this text and end
  --version  show the version and end

Environment:
  LV2_PATH           where to look for effects, a list of folders
  TONEWRIGHT_EFFECT  the URI of the effect to host, instead of the bundled one
  TONEWRIGHT_OUTPUT  pipewire, rtaudio or silent: where the sound goes, instead of the first that answers

The program has no other options, no settings, and remembers nothing.)";

} // namespace

int main(int argc, char** argv) {
    platform::setApplicationIdentity({.help = Help});
    platform::registerClass<tonewright::AppDelegate>("AppDelegate");
    platform::registerClass<tonewright::ViewController>("ViewController");
    tonewright::registerHelpScreen();
    platform::UIApplicationMain(argc, argv, std::nullopt, "AppDelegate");
    return 0;
}

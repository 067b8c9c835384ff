// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tonewright plays loops through one audio effect and shows the effect's own interface.
//
// A map of the source tree:
//
//   app/main.cpp             registers the classes and runs the application
//   app/AppDelegate          the application's delegate, which owns the window
//   app/interface/           the main screen: ViewController, and Main.ui, which describes its controls
//   app/Audio Engine/        AUExtensionManager finds the effect; AUEnginePlayer plays loops through it
//   shared/HelpViewController/ the help screen, with the manual in a web view
//   shared/Common/           independent of this application: text, paths, views, files, animation
//   platform/                the interfaces to the operating system that app and shared use:
//     foundation/            URLs, files, the bundle of resources, console output, fatal errors
//     dispatch/              task queues and the run loop
//     audio/                 the engine's graph and nodes, audio files, the audio session, output devices
//     effects/               the component registry and the LV2 host
//     ui/                    the application, views, controllers, interface descriptions
//     network/, web/         downloads, and the web view of the help screen
//   gallery/                 a separate program that demonstrates the animation engine
//   effect/                  the bundled effect, an LV2 bundle
//   loops/                   the recipes of the loops, their synthesiser and their encoder
//   resources/               the manual, the help page, the desktop entry, icons
//   tests/, benches/         tests, in folders that mirror the source tree, and benchmarks
//
// app and shared include only the standard library and the headers of platform.
#include "app/AppDelegate.hpp"
#include "app/interface/ViewController.hpp"
#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/classRegistry.hpp"
#include "shared/HelpViewController/HelpViewController.hpp"

namespace {

constexpr const char* Help = R"(Usage: tonewright [OPTION]

Play loops through an audio effect and use the effect's own interface.

  --help     show this text and exit
  --version  show the version and exit

Environment:
  LV2_PATH                       folders to search for effects, separated by colons
  TONEWRIGHT_EFFECT              the URI of the effect to host instead of the bundled effect
  TONEWRIGHT_EFFECT_PROCESS      own: run the effect in a process of its own (default: host, inside the program)
  TONEWRIGHT_EFFECT_CONFINEMENT  off: let an effect in a process of its own do what the program may
  TONEWRIGHT_OUTPUT              the sound output: pipewire, rtaudio or silent (default: the first one available)

There are no other options and no settings, and nothing is saved.)";

} // namespace

int main(int argc, char** argv) {
    platform::setApplicationIdentity({.help = Help});
    platform::registerClass<tonewright::AppDelegate>("AppDelegate");
    platform::registerClass<tonewright::ViewController>("ViewController");
    tonewright::registerHelpScreen();
    platform::UIApplicationMain(argc, argv, std::nullopt, "AppDelegate");
    return 0;
}

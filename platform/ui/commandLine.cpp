// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/commandLine.hpp"

#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/foundation/console.hpp"

#include <cstdlib>
#include <string>
#include <string_view>

namespace platform {
namespace {

constexpr std::string_view Help = R"(Usage: tonewright [OPTION]

Play loops through an audio effect and work the effect's own interface.

  --help     show this text and end
  --version  show the version and end

Environment:
  LV2_PATH           where to look for effects, a list of folders
  TONEWRIGHT_EFFECT  the URI of the effect to host, instead of the bundled one
  TONEWRIGHT_OUTPUT  pipewire, rtaudio or silent: where the sound goes, instead of the first that answers

The program has no other options, no settings, and remembers nothing.)";

} // namespace

void answerCommandLine(int argc, char** argv) {
    if (argc < 2) return;
    const ApplicationIdentity& program = applicationIdentity();
    const std::string_view argument = argv[1];
    if (argument == "--help" || argument == "-h") {
        print(program.help.empty() ? Help : program.help);
        std::exit(EXIT_SUCCESS);
    }
    if (argument == "--version") {
        print(program.programName + " " TONEWRIGHT_VERSION);
        std::exit(EXIT_SUCCESS);
    }
    warn(program.programName + ": unknown argument \"" + std::string(argument) +
         "\"; --help shows what there is.");
    std::exit(2);
}

} // namespace platform

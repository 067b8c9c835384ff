// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/commandLine.hpp"

#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/foundation/console.hpp"

#include <cstdlib>
#include <string>
#include <string_view>

namespace platform {

void answerCommandLine(int argc, char** argv) {
    if (argc < 2) return;
    const ApplicationIdentity& program = applicationIdentity();
    const std::string_view argument = argv[1];
    if (argument == "--help" || argument == "-h") {
        print(program.help);
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

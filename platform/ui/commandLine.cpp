// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/commandLine.hpp"

#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/foundation/confinement.hpp"
#include "platform/foundation/console.hpp"

#include <cstdlib>
#include <string>
#include <string_view>

namespace platform {
namespace {

// The mechanisms of this kernel for confining the processes that decode pictures or run effects.
std::string confinementLine() {
    const ConfinementSupport support = confinementSupport();
    return "Confinement: " +
           (support.landlock > 0 ? "Landlock ABI " + std::to_string(support.landlock) : "no Landlock") +
           (support.hasSeccomp ? ", seccomp" : ", no seccomp");
}

} // namespace

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
        print(confinementLine());
        std::exit(EXIT_SUCCESS);
    }
    warn(program.programName + ": unknown argument \"" + std::string(argument) + "\"; see --help.");
    std::exit(2);
}

} // namespace platform

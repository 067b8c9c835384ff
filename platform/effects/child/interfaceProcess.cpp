// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/child/interfaceProcess.hpp"

#include "platform/effects/child/InterfaceServer.hpp"
#include "platform/effects/child/UridClient.hpp"
#include "platform/effects/child/confineEffect.hpp"
#include "platform/effects/child/tolerateXErrors.hpp"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unistd.h>

namespace platform::lv2 {
namespace {

int fail(const Error& error) {
    std::fprintf(stderr, "%s\n", error.localizedDescription().c_str());
    return 1;
}

int run(char** words, std::unique_ptr<InterfaceToolkit> (*makeToolkit)()) {
    constexpr int Socket = 3, Urids = 4, Messages = 5;
    auto messages = MessageMemory::open(Descriptor(Messages));
    if (!messages) return fail(messages.error());
    const BundleIndex index = BundleIndex::read(); // updates the cache, which a confined process cannot do
    if (const auto failure = confineEffect(words[1], Confinement::Interface, index)) return fail(*failure);
    ::setenv("DISPLAY", words[6], 1);
    std::setlocale(LC_ALL, "");      // NOLINT(concurrency-mt-unsafe): no other thread runs yet
    std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe): as above
    const std::unique_ptr<InterfaceToolkit> toolkit = makeToolkit();
    tolerateXErrors();
    UridMap::shared().follow(std::make_unique<UridClient>(Urids));
    InterfaceServer server(Socket, std::move(messages.value()), index, *toolkit,
                           {.effect = words[1],
                            .interface = words[2],
                            .window = std::strtoul(words[3], nullptr, 10),
                            .scale = std::strtof(words[4], nullptr),
                            .sampleRate = std::strtod(words[5], nullptr)});
    server.run();
    ignoreXErrors();
    return 0;
}

} // namespace

void runInterfaceProcess(int count, char** arguments, std::unique_ptr<InterfaceToolkit> (*makeToolkit)()) {
    if (count != InterfaceWords + 1 || arguments[1] != std::string_view(InterfaceWord)) {
        std::fputs("This program is a part of the application, which starts it.\n", stderr);
        ::_exit(2);
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGINT, SIG_IGN); // Ctrl+C in a terminal: this process ends when the application ends
    // The interface's own threads and handlers, and its toolkit, have nothing to finish.
    ::_exit(run(arguments + 2, makeToolkit));
}

} // namespace platform::lv2

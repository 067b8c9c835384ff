// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one effect, or its interface, for the application, which starts it; not for use by hand.
// Usage: tonewright-effect URI INPUTS OUTPUTS PORTS
//            descriptor 3: the socket for requests, 4: the block's memory, 5: the socket for URIDs, 6: the
//            memory for messages
//        tonewright-effect --interface ...          see interfaceProcess.hpp
#include "platform/effects/child/EffectServer.hpp"
#include "platform/effects/child/UridClient.hpp"
#include "platform/effects/child/confineEffect.hpp"
#include "platform/effects/child/interfaceProcess.hpp"
#include "platform/effects/lv2/interfaceKinds.hpp"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>

namespace platform::lv2 {
namespace {

int fail(const Error& error) {
    std::fprintf(stderr, "%s\n", error.localizedDescription().c_str());
    return 1;
}

std::uint32_t number(const char* word) {
    return static_cast<std::uint32_t>(std::strtoul(word, nullptr, 10));
}

int runSound(char** words) {
    constexpr int Socket = 3, Memory = 4, Urids = 5, Messages = 6;
    auto memory =
        BlockMemory::open(Descriptor(Memory), {number(words[1]), number(words[2]), number(words[3])});
    if (!memory) return fail(memory.error());
    auto messages = MessageMemory::open(Descriptor(Messages));
    if (!messages) return fail(messages.error());
    const BundleIndex index = BundleIndex::read(); // updates the cache, which a confined process cannot do
    if (const auto failure = confineEffect(words[0], Confinement::Sound, index)) return fail(*failure);
    UridMap::shared().follow(std::make_unique<UridClient>(Urids));
    EffectServer(Socket, std::move(memory.value()), std::move(messages.value()), words[0], index).run();
    return 0;
}

// Continues as the program that runs interfaces of this kind.
[[noreturn]] void runOtherToolkit(Interface::Kind kind, char** arguments) {
    std::error_code failure;
    const auto self = std::filesystem::read_symlink("/proc/self/exe", failure);
    std::string program = self.parent_path() / interfaceProgram(kind);
    arguments[0] = program.data();
    ::execv(program.c_str(), arguments);
    std::fprintf(stderr, "%s cannot be started.\n", program.c_str());
    ::_exit(1);
}

[[noreturn]] void runInterface(int count, char** arguments) {
    const auto kind = static_cast<Interface::Kind>(number(arguments[2]));
    if (kind == Interface::Kind::Gtk2 || kind == Interface::Kind::Qt5) runOtherToolkit(kind, arguments);
    runInterfaceProcess(count, arguments, makePlainToolkit);
}

} // namespace
} // namespace platform::lv2

int main(int count, char** arguments) {
    using namespace platform::lv2;
    if (count == InterfaceWords + 1 && arguments[1] == std::string_view(InterfaceWord)) {
        runInterface(count, arguments);
    }
    if (count != 5) {
        std::fputs("This program is a part of the application, which starts it.\n", stderr);
        return 2;
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGINT, SIG_IGN); // Ctrl+C in a terminal: this process ends when the application ends
    // An effect's own threads and handlers have nothing to finish.
    ::_exit(runSound(arguments + 1));
}

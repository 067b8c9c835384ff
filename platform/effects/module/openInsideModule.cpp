// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The entry of the library that runs effects inside the program.
#include "platform/effects/inside/InsideModule.hpp"
#include "platform/effects/running/InterfaceHost.hpp"
#include "platform/effects/running/Processor.hpp"

namespace platform::lv2 {
namespace {

Result<std::shared_ptr<EffectProcessor>> makeProcessor(std::shared_ptr<World> world, Plugin plugin,
                                                       bool isOurs, double sampleRate,
                                                       std::uint32_t blockFrames) {
    auto made = Processor::make(std::move(world), std::move(plugin), isOurs, sampleRate, blockFrames);
    if (!made) return made.error();
    return std::shared_ptr<EffectProcessor>(std::move(made.value()));
}

Result<std::unique_ptr<RunningInterface>> runInterface(InterfacePeer& peer, const Interface& interface,
                                                       InterfacePlace place) {
    auto host = InterfaceHost::make(peer, interface, std::move(place));
    if (!host) return host.error();
    return std::unique_ptr<RunningInterface>(std::move(host.value()));
}

} // namespace
} // namespace platform::lv2

// Extern "C" for its name only; both sides are C++. The module is an argument because a C function cannot
// return it.
extern "C" __attribute__((visibility("default"))) void
tonewrightOpenInsideModule(std::unique_ptr<platform::lv2::UridSource> urids,
                           platform::lv2::InsideModule& module) {
    using namespace platform::lv2;
    UridMap::shared().follow(std::move(urids));
    module = {.makeProcessor = makeProcessor, .runInterface = runInterface};
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The library that runs effects inside the program. Opened only when an effect is to run there, so that
// otherwise the program contains no code that loads plug-ins.
#pragma once

#include "platform/effects/lv2/EffectProcessor.hpp"
#include "platform/effects/lv2/InterfacePeer.hpp"
#include "platform/effects/lv2/UridMap.hpp"

#include <memory>

namespace platform::lv2 {

/// What the library offers. The program and the library are built together, so that C++ types may pass
/// between them.
struct InsideModule {
    /// As Processor::make. Any thread except the audio thread.
    Result<std::shared_ptr<EffectProcessor>> (*makeProcessor)(std::shared_ptr<World> world, Plugin plugin,
                                                              bool isOurs, double sampleRate,
                                                              std::uint32_t blockFrames) = nullptr;
    /// As InterfaceHost::make. Main thread.
    Result<std::unique_ptr<RunningInterface>> (*runInterface)(InterfacePeer& peer, const Interface& interface,
                                                              InterfacePlace place) = nullptr;
};

/// The library's entry, which is called once and fills in `module`. The library has a map of its own, which
/// asks `urids` for what it does not know.
using OpenInsideModule = void(std::unique_ptr<UridSource> urids, InsideModule& module);
inline constexpr const char* OpenInsideModuleSymbol = "tonewrightOpenInsideModule";

/// Opens the library at the first call and returns it, or the reason why it cannot be opened. It is never
/// closed, because the libraries of plug-ins stay loaded too. Any thread except the audio thread.
[[nodiscard]] Result<const InsideModule*> insideModule();

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/inside/InsideInterface.hpp"

#include "platform/effects/inside/InsideModule.hpp"
#include "platform/effects/inside/Watchdog.hpp"

namespace platform::lv2 {

Result<std::unique_ptr<EffectInterface>>
InsideInterface::make(std::shared_ptr<AudioUnit> unit, const Interface& interface, InterfacePlace place) {
    std::unique_ptr<InsideInterface> made(new InsideInterface(std::move(unit)));
    const Watchdog watchdog("The interface " + interface.uri);
    const auto module = insideModule();
    if (!module) return module.error();
    auto running = module.value()->runInterface(*made, interface, std::move(place));
    if (!running) return running.error();
    made->_running = std::move(running.value());
    return std::unique_ptr<EffectInterface>(std::move(made));
}

InsideInterface::~InsideInterface() {
    setVisible(false);
    _unit->releaseInterface();
}

EffectInterface::State InsideInterface::update() {
    _running->update();
    return _running->hasClosed() ? State::Closed : State::Open;
}

} // namespace platform::lv2

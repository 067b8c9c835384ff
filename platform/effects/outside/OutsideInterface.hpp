// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect's interface that runs in a process of its own. Nothing here waits for that process; a thread ends
// it if it does not answer. Everything that it sends is checked.
#pragma once

#include "platform/effects/lv2/InterfacePeer.hpp"
#include "platform/effects/outside/UridService.hpp"
#include "platform/effects/process/MessageMemory.hpp"
#include "platform/effects/process/interfacePackets.hpp"
#include "platform/effects/unit/AudioUnit.hpp"
#include "platform/effects/unit/EffectInterface.hpp"
#include "platform/foundation/Result.hpp"

#include <memory>
#include <string>
#include <vector>

namespace platform::lv2 {

class OutsideInterface final : public EffectInterface {
  public:
    /// Starts a process that creates the interface on the named display, or returns the reason why not. An
    /// interface with windows of its own needs no parent window; setVisible(true) raises them. The caller
    /// must have called the unit's `claimInterface`; the claim is released at the end.
    [[nodiscard]] static Result<std::unique_ptr<EffectInterface>> start(std::shared_ptr<AudioUnit> unit,
                                                                        const Interface& interface,
                                                                        InterfacePlace place,
                                                                        const std::string& display);
    ~OutsideInterface() override;

    [[nodiscard]] unsigned long namedWindow() const noexcept override { return _namedWindow; }
    void setVisible(bool isVisible) override;
    State update() override;
    [[nodiscard]] int connection() const noexcept override { return _socket.get(); }

  private:
    struct Watched;

    OutsideInterface(std::shared_ptr<AudioUnit> unit, const Interface& interface, InterfacePlace place);
    [[nodiscard]] std::optional<Error> startProcess(const Interface& interface, const std::string& display);
    void takePackets();
    void takePacket(const InterfacePacket& packet);
    void takeRecords();
    void takeAtom(std::uint32_t port);
    void tellValues();
    void passEvents();
    void handleEnd();

    const std::shared_ptr<AudioUnit> _unit;
    const InterfacePlace _place;
    const Interface::Kind _kind;
    const std::string _name; // for messages: "The interface ..."
    const std::shared_ptr<UridService> _urids = UridService::shared();
    std::shared_ptr<Watched> _watched; // shared with the thread that watches the process
    Descriptor _socket;
    std::optional<SharedRing> _toProcess, _toHost;
    State _state = State::Opening;
    unsigned long _namedWindow = 0;
    std::vector<float> _told;     // by port index: the last value that the interface knows, NaN if none
    std::uint32_t _taken = 0;     // how many values of the interface were taken
    bool _hasNewRecords = false;  // that the process has not been woken for
    std::vector<std::byte> _atom; // reused
};

} // namespace platform::lv2

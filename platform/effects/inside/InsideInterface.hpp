// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect's interface that runs inside the program. Main thread only.
#pragma once

#include "platform/effects/lv2/InterfacePeer.hpp"
#include "platform/effects/unit/AudioUnit.hpp"
#include "platform/effects/unit/EffectInterface.hpp"

#include <memory>

namespace platform::lv2 {

class InsideInterface final : public EffectInterface, private InterfacePeer {
  public:
    /// Loads and creates the interface, or returns the reason why that failed. The caller must have called
    /// the unit's `claimInterface`; the claim is released at the end.
    [[nodiscard]] static Result<std::unique_ptr<EffectInterface>>
    make(std::shared_ptr<AudioUnit> unit, const Interface& interface, InterfacePlace place);
    ~InsideInterface() override;

    [[nodiscard]] unsigned long namedWindow() const noexcept override { return _running->namedWindow(); }
    void setVisible(bool isVisible) override { _unit->runOnSilence(isVisible); }
    State update() override;

  private:
    explicit InsideInterface(std::shared_ptr<AudioUnit> unit)
        : _unit(std::move(unit)) {}
    [[nodiscard]] const Plugin& plugin() const noexcept override { return _unit->lv2Processor().plugin(); }
    [[nodiscard]] double sampleRate() const noexcept override { return _unit->lv2Processor().sampleRate(); }
    [[nodiscard]] float value(std::uint32_t port) const override { return _unit->parameterValue(port); }
    void setValue(std::uint32_t port, float value) override { _unit->setParameterValue(port, value); }
    void setListening(bool isListening) override { _unit->lv2Processor().setListening(isListening); }
    bool sendAtom(std::uint32_t port, std::span<const std::byte> atom) override {
        return _unit->lv2Processor().sendAtom(port, atom);
    }
    bool receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) override {
        return _unit->lv2Processor().receiveAtom(port, atom);
    }

    const std::shared_ptr<AudioUnit> _unit;
    std::unique_ptr<RunningInterface> _running;
};

} // namespace platform::lv2

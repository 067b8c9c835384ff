// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The operations on an LV2 plug-in that its unit and its interface use, independent of the process in which
// the plug-in runs. Control side, any thread, except for the operations of NodeProcessor that belong to the
// audio side.
#pragma once

#include "platform/audio/NodeProcessor.hpp"
#include "platform/effects/detail/MIDIOutputDelivery.hpp"
#include "platform/effects/lv2/Plugin.hpp"
#include "platform/effects/lv2/World.hpp"

#include "platform/foundation/Result.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace platform::lv2 {

class EffectProcessor : public NodeProcessor {
  public:
    /// Returns whether the plug-in, and therefore its interface, runs in a process of its own.
    [[nodiscard]] virtual bool isOutside() const noexcept { return false; }
    [[nodiscard]] virtual const Plugin& plugin() const noexcept = 0;
    [[nodiscard]] virtual const std::shared_ptr<World>& world() const noexcept = 0;
    /// Returns the sample rate of the current or the last instance.
    [[nodiscard]] virtual double sampleRate() const noexcept = 0;
    /// Returns the object that delivers MIDI events, or null if the plug-in has no MIDI output.
    [[nodiscard]] virtual MIDIOutputDelivery* midi() noexcept = 0;

    /// Return and set the value of a control port; `setValue` does not clamp it.
    [[nodiscard]] virtual float value(std::uint32_t port) const noexcept = 0;
    virtual void setValue(std::uint32_t port, float value) noexcept = 0;

    /// Queues one MIDI message for the start of the next block. Returns false if `port` is not a MIDI input
    /// or the queue is full.
    virtual bool sendMidi(std::uint32_t port, std::span<const std::uint8_t> message) = 0;
    /// Queues one atom (header and body) from the interface for an atom input. Returns false if it does not
    /// fit.
    virtual bool sendAtom(std::uint32_t port, std::span<const std::byte> atom) = 0;
    /// Sets whether events of the atom outputs are queued for an interface.
    virtual void setListening(bool isListening) noexcept = 0;
    /// Removes the next event for the interface from the queue and stores its port index and atom. Returns
    /// false if there is none. One thread only.
    virtual bool receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) = 0;

    /// Returns the whole state as text, which is empty if the plug-in has no state, or the reason why saving
    /// it failed.
    [[nodiscard]] virtual Result<std::string> saveState() = 0;
    /// Restores the state from the text that `saveState` returned.
    [[nodiscard]] virtual std::optional<Error> restoreState(const std::string& text) = 0;
    /// Restores the state that the preset `uri` contains.
    [[nodiscard]] virtual std::optional<Error> restorePreset(const std::string& uri) = 0;
};

} // namespace platform::lv2

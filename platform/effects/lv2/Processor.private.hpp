// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs an LV2 plug-in as a node of the engine's graph, and keeps its settings from one instance to the next.
// Private to platform/effects.
#pragma once

#include "platform/audio/NodeProcessor.hpp"
#include "platform/effects/lv2/Instance.private.hpp"
#include "platform/effects/lv2/PortBuffers.private.hpp"
#include "platform/effects/lv2/RunGate.private.hpp"

#include <memory>
#include <optional>

namespace platform::lv2 {

class Processor final : public NodeProcessor {
  public:
    /// Make the processor with a first instance, or tell in a sentence why not. `isOurs`: the plug-in keeps
    /// the rules of the audio thread, so the detector need not look away.
    [[nodiscard]] static Result<std::shared_ptr<Processor>> make(std::shared_ptr<World> world, Plugin plugin,
                                                                 bool isOurs);
    ~Processor() override;

    [[nodiscard]] std::uint32_t inputChannels() const noexcept override { return _buffers.inputChannels(); }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override { return _buffers.outputChannels(); }
    [[nodiscard]] std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) override;
    void release() noexcept override;
    void process(const float* const* inputs, float* const* outputs, std::uint32_t frames,
                 std::int64_t sampleTime) noexcept override;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override { return _buffers.latencyFrames(); }

    [[nodiscard]] const Plugin& plugin() const noexcept { return _plugin; }
    [[nodiscard]] PortBuffers& buffers() noexcept { return _buffers; }
    /// Give the delivery of MIDI events; null when the plug-in has no MIDI output.
    [[nodiscard]] MIDIOutputDelivery* midi() noexcept { return _midi.get(); }
    [[nodiscard]] const std::shared_ptr<World>& world() const noexcept { return _world; }
    [[nodiscard]] double sampleRate() const;

    /// Give the whole state as text. Control side.
    [[nodiscard]] std::string saveState() const;
    /// Set everything from the text of `saveState`. Control side.
    [[nodiscard]] std::optional<Error> restoreState(const std::string& text);
    /// Set everything that the preset `uri` holds. Control side.
    [[nodiscard]] std::optional<Error> restorePreset(const std::string& uri);

  private:
    using State = std::unique_ptr<LilvState, Releaser<lilv_state_free>>;

    Processor(std::shared_ptr<World> world, Plugin plugin, bool isOurs);
    [[nodiscard]] std::optional<Error> makeInstance(double sampleRate, std::uint32_t nominalFrames);
    [[nodiscard]] State captureState() const;
    void applyState(const LilvState& state);
    void loadDefaultState();
    [[nodiscard]] const Port* portNamed(std::string_view symbol) const;
    void run(std::uint32_t frames, std::int64_t sampleTime) noexcept;

    const std::shared_ptr<World> _world;
    const Plugin _plugin;
    const bool _isOurs;
    std::unique_ptr<MIDIOutputDelivery> _midi;
    PortBuffers _buffers;
    mutable std::mutex _instanceMutex;   // control side only: one at a time changes or asks the instance
    std::unique_ptr<Instance> _instance; // replaced by `allocate` only, which never runs beside `process`
    RunGate _gate;
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs an LV2 plug-in as a node of the engine's graph, and keeps its settings from one instance to the next.
#pragma once

#include "platform/audio/NodeProcessor.hpp"
#include "platform/effects/lv2/InstanceKeeper.hpp"
#include "platform/effects/lv2/PortBuffers.hpp"
#include "platform/effects/lv2/StateNumbers.hpp"
#include "platform/realtime/Gate.hpp"

#include <atomic>
#include <memory>
#include <optional>

namespace platform::lv2 {

class Processor final : public NodeProcessor {
  public:
    /// Creates the processor with an instance for this rate and these blocks, or returns the reason why not.
    /// `isOurs`: the plug-in keeps the rules of the audio thread, so the detector stays enabled. Allows a
    /// plug-in five seconds: only the caller waits.
    [[nodiscard]] static Result<std::shared_ptr<Processor>> make(std::shared_ptr<World> world, Plugin plugin,
                                                                 bool isOurs, double sampleRate,
                                                                 std::uint32_t blockFrames);
    ~Processor() override;

    [[nodiscard]] std::string name() const override { return _plugin.name; }
    [[nodiscard]] std::uint32_t inputChannels() const noexcept override {
        return _buffers->audio.inputChannels();
    }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override {
        return _buffers->audio.outputChannels();
    }
    void setBlockFrames(std::uint32_t frames) override;
    /// Offline, the plug-in's worker works between two blocks, so that the sound is the same each time.
    void setOffline(bool isOffline) override;
    /// Another rate requires another instance, created after the previous one has ended: some plug-ins cannot
    /// exist twice. Allows two seconds for everything.
    [[nodiscard]] std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) override;
    void release() noexcept override;
    void process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept override;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override {
        return _buffers->controls.latencyFrames();
    }

    [[nodiscard]] const Plugin& plugin() const noexcept { return _plugin; }
    [[nodiscard]] PortBuffers& buffers() noexcept { return *_buffers; }
    /// Returns the delivery of MIDI events; null if the plug-in has no MIDI output.
    [[nodiscard]] MIDIOutputDelivery* midi() noexcept { return _midi.get(); }
    [[nodiscard]] const std::shared_ptr<World>& world() const noexcept { return _world; }
    /// Returns the rate of the instance, or of the last one.
    [[nodiscard]] double sampleRate() const noexcept { return _sampleRate; }

    /// Returns the whole state as text. Control side.
    [[nodiscard]] std::string saveState() const;
    /// Sets everything from the text of `saveState`. Control side.
    [[nodiscard]] std::optional<Error> restoreState(const std::string& text);
    /// Sets everything that the preset `uri` contains. Control side.
    [[nodiscard]] std::optional<Error> restorePreset(const std::string& uri);

  private:
    using State = std::unique_ptr<LilvState, Releaser<lilv_state_free>>;
    struct CapturedState {
        State state;                       // null when there is none
        std::vector<StoredNumber> numbers; // that the plug-in stored in it
    };

    Processor(std::shared_ptr<World> world, Plugin plugin, bool isOurs, double sampleRate,
              std::uint32_t blockFrames);
    [[nodiscard]] Instance::Setup setup() const;
    [[nodiscard]] bool suitsBlocks(const Instance& instance) const noexcept;
    [[nodiscard]] Error doesNotReturn() const;
    [[nodiscard]] CapturedState captureState() const;
    void restore(const LilvState& state);
    [[nodiscard]] std::optional<Error> applyState(const LilvState& state);
    void loadDefaultState();
    [[nodiscard]] const Port* portNamed(std::string_view symbol) const;
    void run(Instance& instance, std::uint32_t frames, std::int64_t sampleTime) noexcept;

    const std::shared_ptr<World> _world;
    const Plugin _plugin;
    const bool _isOurs;
    std::unique_ptr<MIDIOutputDelivery> _midi;
    const std::shared_ptr<PortBuffers> _buffers;
    std::atomic<double> _sampleRate; // written under _instanceMutex
    // Control side only: one thread at a time changes or queries the instance and the following members.
    mutable std::mutex _instanceMutex;
    // The audio side uses the instance inside the gate, which is closed while it changes.
    Gate _gate;
    InstanceKeeper _keeper;
    CapturedState _kept;        // of the instance that could not be replaced
    std::uint32_t _blockFrames; // of a usual block
    bool _isOffline = false;
};

} // namespace platform::lv2

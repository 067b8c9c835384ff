// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs an LV2 plug-in as a node of the engine's graph, and transfers its settings from one instance to the
// next.
#pragma once

#include "platform/effects/lv2/EffectProcessor.hpp"
#include "platform/effects/running/InstanceKeeper.hpp"
#include "platform/effects/running/PortBuffers.hpp"
#include "platform/effects/running/StateNumbers.hpp"
#include "platform/realtime/Gate.hpp"

#include <atomic>
#include <memory>
#include <optional>

namespace platform::lv2 {

class Processor final : public EffectProcessor {
  public:
    /// Creates the processor with an instance for this sample rate and block length, or returns the reason
    /// why that failed. `isOurs` means that the plug-in is the program's own effect, for which
    /// RealtimeSanitizer stays enabled. Waits for the plug-in for at most five seconds.
    [[nodiscard]] static Result<std::shared_ptr<Processor>> make(std::shared_ptr<World> world, Plugin plugin,
                                                                 bool isOurs, double sampleRate,
                                                                 std::uint32_t blockFrames);
    ~Processor() override;

    [[nodiscard]] std::string name() const override { return _plugin->name; }
    [[nodiscard]] std::uint32_t inputChannels() const noexcept override {
        return _buffers->audio.inputChannels();
    }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override {
        return _buffers->audio.outputChannels();
    }
    void setBlockFrames(std::uint32_t frames) override;
    /// Offline, the plug-in's worker carries out its requests between blocks, so that the sound is
    /// reproducible.
    void setOffline(bool isOffline) override;
    /// Creates a new instance if the sample rate changes, after destroying the previous one, because some
    /// plug-ins do not support two instances. Waits for the plug-in for at most two seconds in all.
    [[nodiscard]] std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) override;
    void release() noexcept override;
    void process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept override;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override {
        return _buffers->controls.latencyFrames();
    }

    [[nodiscard]] const Plugin& plugin() const noexcept override { return *_plugin; }
    [[nodiscard]] const std::shared_ptr<World>& world() const noexcept override { return _world; }
    [[nodiscard]] double sampleRate() const noexcept override { return _sampleRate; }
    [[nodiscard]] MIDIOutputDelivery* midi() noexcept override { return _midi.get(); }
    [[nodiscard]] float value(std::uint32_t port) const noexcept override {
        return _buffers->controls.value(port);
    }
    void setValue(std::uint32_t port, float value) noexcept override {
        _buffers->controls.setValue(port, value);
    }
    bool sendMidi(std::uint32_t port, std::span<const std::uint8_t> message) override;
    bool sendAtom(std::uint32_t port, std::span<const std::byte> atom) override {
        return _buffers->events.send(port, atom);
    }
    void setListening(bool isListening) noexcept override { _buffers->events.setListening(isListening); }
    bool receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) override {
        return _buffers->events.receive(port, atom);
    }
    [[nodiscard]] Result<std::string> saveState() override;
    [[nodiscard]] std::optional<Error> restoreState(const std::string& text) override;
    [[nodiscard]] std::optional<Error> restorePreset(const std::string& uri) override;

    /// Sends the plug-in's MIDI events there instead of to its delivery. Call before anything renders.
    void setMidiSink(MidiSink* sink) noexcept { _midiSink = sink; }
    /// See EventPorts::useMessages.
    void useMessages(const MessageMemory& messages) { _buffers->events.useMessages(messages); }

  private:
    using State = std::shared_ptr<LilvState>;
    struct CapturedState {
        State state;                       // null when there is none
        std::vector<StoredNumber> numbers; // the numbers that the plug-in stored in `state`
        std::size_t bytes = 0;             // how many bytes it stored there
    };

    Processor(std::shared_ptr<World> world, Plugin plugin, bool isOurs, double sampleRate,
              std::uint32_t blockFrames);
    [[nodiscard]] Instance::Setup setup() const;
    [[nodiscard]] bool suitsBlocks(const Instance& instance) const noexcept;
    [[nodiscard]] Error doesNotReturn() const;
    [[nodiscard]] Result<CapturedState> captureState(const Deadline& deadline);
    [[nodiscard]] std::optional<Error> restore(State state, InstanceKeeper::DuringRun duringRun,
                                               const Deadline& deadline);
    [[nodiscard]] std::optional<Error> applyState(State state);
    [[nodiscard]] std::optional<Error> loadDefaultState(const Deadline& deadline);
    void run(Instance& instance, std::uint32_t frames, std::int64_t sampleTime) noexcept;

    const std::shared_ptr<World> _world;
    const std::shared_ptr<const Plugin> _plugin;
    const bool _isOurs;
    std::unique_ptr<MIDIOutputDelivery> _midi;
    MidiSink* _midiSink = nullptr; // null: events are dropped
    const std::shared_ptr<PortBuffers> _buffers;
    std::atomic<double> _sampleRate; // written under _instanceMutex
    // Guards the instance and the members below. Control side only.
    mutable std::mutex _instanceMutex;
    // The audio thread uses the instance inside the gate. The control side closes the gate while it changes
    // the instance.
    Gate _gate;
    InstanceKeeper _keeper;
    CapturedState _kept;        // the settings of an instance whose replacement could not be created
    std::uint32_t _blockFrames; // the usual block length
    bool _isOffline = false;
};

} // namespace platform::lv2

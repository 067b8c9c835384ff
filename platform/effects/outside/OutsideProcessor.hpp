// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs an LV2 plug-in in a process of its own, with a second process on standby (the spare). If the first
// process ends or hangs, the spare renders the same block; if there is no time for that, the input is heard
// instead. A new process is started with the current settings.
#pragma once

#include "platform/effects/lv2/EffectProcessor.hpp"
#include "platform/effects/outside/DryPath.hpp"
#include "platform/effects/outside/EffectProcess.hpp"
#include "platform/effects/outside/RenderingThread.hpp"
#include "platform/effects/outside/Supervisor.hpp"
#include "platform/realtime/Gate.hpp"

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace platform::lv2 {

class OutsideProcessor final : public EffectProcessor {
  public:
    /// Creates the processor with a process that has an instance for this sample rate and block length, or
    /// returns the reason why that failed. Allows the plug-in up to five seconds, because only the
    /// caller has to wait.
    [[nodiscard]] static Result<std::shared_ptr<OutsideProcessor>>
    make(std::shared_ptr<World> world, Plugin plugin, double sampleRate, std::uint32_t blockFrames);
    ~OutsideProcessor() override;

    [[nodiscard]] std::string name() const override { return _plugin.name; }
    [[nodiscard]] std::uint32_t inputChannels() const noexcept override { return _shape.inputs; }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override { return _shape.outputs; }
    void setBlockFrames(std::uint32_t frames) override;
    void setOffline(bool isOffline) override;
    [[nodiscard]] std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) override;
    void release() noexcept override;
    void process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept override;
    [[nodiscard]] bool hasFailed() const noexcept override { return _hasFailed; }
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override;

    [[nodiscard]] bool isOutside() const noexcept override { return true; }
    [[nodiscard]] const Plugin& plugin() const noexcept override { return _plugin; }
    [[nodiscard]] const std::shared_ptr<World>& world() const noexcept override { return _world; }
    [[nodiscard]] double sampleRate() const noexcept override { return _sampleRate; }
    [[nodiscard]] MIDIOutputDelivery* midi() noexcept override { return _midi.get(); }
    [[nodiscard]] float value(std::uint32_t port) const noexcept override;
    void setValue(std::uint32_t port, float value) noexcept override;
    bool sendMidi(std::uint32_t port, std::span<const std::uint8_t> message) override;
    bool sendAtom(std::uint32_t port, std::span<const std::byte> atom) override;
    void setListening(bool isListening) noexcept override;
    bool receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) override;
    [[nodiscard]] Result<std::string> saveState() override;
    [[nodiscard]] std::optional<Error> restoreState(const std::string& text) override;
    [[nodiscard]] std::optional<Error> restorePreset(const std::string& uri) override;
    /// Starts a process again if none is running and the effect stays out or is to be started later. Any
    /// thread; does not wait.
    void reload();

  private:
    using Clock = std::chrono::steady_clock;
    using ProcessPointer = std::shared_ptr<EffectProcess>;

    // A copy of the settings that a new process receives.
    struct Settings {
        std::uint32_t blockFrames = 0, maximumFrames = 0;
        double sampleRate = 0;
        bool isOffline = false, isAllocated = false;
        std::string state;                 // the state that was restored last
        std::uint64_t generation = 0;      // incremented by every change
        std::uint64_t stateGeneration = 0; // incremented by every change of the state

        [[nodiscard]] Supervisor::Settings counting() const {
            return {.isAllocated = isAllocated,
                    .isOffline = isOffline,
                    .generation = generation,
                    .stateGeneration = stateGeneration};
        }
    };

    OutsideProcessor(std::shared_ptr<World> world, Plugin plugin, double sampleRate,
                     std::uint32_t blockFrames);

    // Control side.
    [[nodiscard]] ProcessPointer current() const;
    [[nodiscard]] Settings settings() const;
    template <class Change>
    void change(Change&& change);
    [[nodiscard]] Result<ProcessPointer> startProcess(const Settings& settings, bool isFirst) const;
    [[nodiscard]] std::optional<Error> askBoth(const Message& request, const std::string& text = {});
    [[nodiscard]] std::optional<Error> restore(const Message& request, const std::string& text);
    void takeValues(const BlockMemory& memory);
    void copyValues(const BlockMemory& memory) const noexcept; // also the audio side

    // Used by the watcher thread.
    void tellWatcher() const noexcept; // any thread
    void watch();
    void superviseProcesses();
    void startNext();
    void measureProcess();
    [[nodiscard]] int untilNextTime() const;
    void handleEnd(const ProcessPointer& ended);

    // Used by the audio side.
    [[nodiscard]] std::uint32_t latencyOf(const BlockMemory& memory) const noexcept; // also the control side
    void placeProcesses() noexcept;
    void processOffline(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept;
    [[nodiscard]] bool renderOutside(ConstPlanarSound inputs, PlanarSound outputs,
                                     std::int64_t sampleTime) noexcept;
    [[nodiscard]] bool takeSpare(std::uint32_t frames, std::int64_t sampleTime,
                                 EffectProcess::Deadline deadline) noexcept;
    void takeMidi(const BlockMemory& memory) noexcept;

    const std::shared_ptr<World> _world;
    const Plugin _plugin;
    const BlockMemory::Shape _shape;
    const std::int64_t _latencyPort; // -1 if the plug-in reports no latency
    std::unique_ptr<MIDIOutputDelivery> _midi;

    // Shared between threads: the current settings, which a new process receives.
    const std::unique_ptr<std::atomic<float>[]> _values; // values of control inputs, by port index
    std::atomic<double> _sampleRate;
    std::atomic<std::uint32_t> _latency{0}; // latency of the last block in frames, written by the audio side
    std::atomic<bool> _isOffline{false};
    std::atomic<bool> _hasFailed{false}; // a process has ended offline during the engine's run
    std::atomic<bool> _isAllocated{false};

    std::atomic<std::uint32_t> _listener{0}; // the interface for which events are kept; 0: none
    std::uint32_t _lastListener = 0;         // of setListening

    mutable std::mutex _mutex; // guards the following members; held only briefly
    ProcessPointer _process;   // null while no process runs
    ProcessPointer _spare;     // on standby with the same settings; null while there is none
    Settings _settings;

    // The audio side uses the processes inside the gate; the watcher closes the gate while it replaces them.
    // The audio side changes to the spare by itself, and the watcher then makes the spare `_process`.
    Gate _gate;
    EffectProcess* _audible = nullptr;
    EffectProcess* _audibleSpare = nullptr;
    RenderingThread _renderingThread;
    // Audio side only.
    DryPath _dry;
    int _lateBlocks = 0;                // late blocks in a row
    std::vector<std::byte> _midiRecord; // buffer for one event

    // The process that the audio side has given up because two blocks in a row were late or its words say
    // that it has ended. Set by the audio side, handled by the watcher.
    std::atomic<EffectProcess*> _hanging{nullptr};
    std::atomic<bool> _isEnding{false};
    std::atomic<bool> _isReloadWanted{false};
    Descriptor _news;                   // an eventfd that wakes the watcher
    Supervisor _supervisor;             // watcher only
    Clock::time_point _nextMeasurement; // of the process's memory; watcher only
    std::thread _watcher;               // started after all other members have been initialised
};

} // namespace platform::lv2

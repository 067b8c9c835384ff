// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The memory of a plug-in's ports, and what crosses between it and the control side: values of controls as
// atomics, events in rings. The memory outlives an instance: another one at another rate is connected to it.
#pragma once

#include "platform/effects/detail/MIDIOutputDelivery.hpp"
#include "platform/effects/lv2/Plugin.hpp"
#include "platform/realtime/ByteRing.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <atomic>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace platform::lv2 {

class PortBuffers {
  public:
    /// `sampleRate`: the rate for the controls' defaults.
    PortBuffers(const std::vector<Port>& ports, double sampleRate);

    /// Connects everything, the audio ports that carry the signal to the object's own planes for now. No
    /// `run` may be in progress.
    void connect(LilvInstance* instance);
    /// Connects the audio ports to these planes for a run. If these have fewer than `blockFrames` frames, to
    /// the object's own planes of that length: some plug-ins trust the length that they were told and read
    /// and write that much, whatever is requested. Audio side.
    void connectAudio(LilvInstance* instance, ConstPlanarSound inputs, PlanarSound outputs,
                      std::uint32_t blockFrames) noexcept;
    /// Copies the run's output from the object's own planes, if it used these. Audio side.
    void takeAudio(PlanarSound outputs) noexcept;
    /// Applies what was set and sent, before a run. Audio side.
    void beforeRun() noexcept;
    /// Passes on the run's output; its first frame is frame `sampleTime` of the engine. Audio side.
    void afterRun(std::int64_t sampleTime, std::uint32_t frames, MIDIOutputDelivery* midi) noexcept;

    [[nodiscard]] std::uint32_t inputChannels() const noexcept { return _inputChannels; }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept { return _outputChannels; }
    [[nodiscard]] std::uint32_t sequenceBytes() const noexcept { return _sequenceBytes; }

    /// Returns the value of a control port, or sets it without limiting. Any thread.
    [[nodiscard]] float value(std::uint32_t port) const noexcept;
    void setValue(std::uint32_t port, float value) noexcept;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept;
    /// Limits the values of inputs whose bounds follow the sample rate to these. Control side.
    void limitValues(const std::vector<Port>& ports, double sampleRate);

    /// Queues one atom, head and body, for an atom input; false if it does not fit. Control side.
    bool send(std::uint32_t port, std::span<const std::byte> atom);
    /// Keeps the events of the atom outputs for an interface, or stops that. Control side.
    void setListening(bool isListening) noexcept { _listener = isListening ? ++_lastListener : 0; }
    /// Takes the next event of an atom output for the current interface: the number of its port and the atom.
    /// Those kept for a previous one are dropped. One control-side thread.
    bool receive(std::uint32_t& port, std::vector<std::byte>& atom);

  private:
    struct AtomPort {
        std::uint32_t index;
        bool supportsMidi;
        std::vector<std::uint64_t> memory; // 8-byte aligned, as atoms must be
        [[nodiscard]] LV2_Atom_Sequence* sequence() noexcept {
            return reinterpret_cast<LV2_Atom_Sequence*>(memory.data());
        }
        [[nodiscard]] std::uint32_t capacity() const noexcept {
            return static_cast<std::uint32_t>(memory.size() * sizeof(std::uint64_t));
        }
    };
    struct AudioPort {
        std::uint32_t index;
        const float* connected =
            nullptr; // the present connection, so that the port is connected only when that changes
        std::vector<float> own; // LongestBlock frames
    };

    AtomPort* inputNamed(std::uint32_t index) noexcept;
    void takeSentEvents() noexcept;
    void handOut(AtomPort& port, std::int64_t sampleTime, std::uint32_t frames,
                 MIDIOutputDelivery* midi) noexcept;

    std::uint32_t _inputChannels = 0, _outputChannels = 0, _sequenceBytes = 0;
    std::vector<AudioPort> _inputs, _outputs;                  // the first so many carry the signal
    std::vector<std::uint32_t> _silentInputs, _unheardOutputs; // audio and CV ports beyond those
    std::vector<float> _silence, _scratch;
    bool _runsOnOwnPlanes = false; // audio side

    std::vector<std::uint32_t> _controlInputs, _controlOutputs;
    std::vector<float> _cells; // by port index: what the plug-in reads and writes; audio side
    // By port index: set by the control side (inputs) or by the audio side (outputs), read by both; the
    // values are independent, so the only order kept is that of the flag, which is set after the values.
    std::unique_ptr<std::atomic<float>[]> _values;
    std::size_t _valueCount;
    std::atomic<bool> _hasNewValues{true};
    std::int64_t _latencyPort = -1;

    std::vector<AtomPort> _atomInputs, _atomOutputs; // their memory: audio side
    std::mutex _sendMutex;                           // makes all senders one writer; control side only
    ByteRing _toPlugin;                              // port number and atom
    std::atomic<std::uint32_t> _listener{0};         // the interface for which events are kept; 0: none
    std::uint32_t _lastListener = 0;                 // control side
    struct EventHead {
        std::uint32_t port;
        std::uint32_t listener;
    };
    ByteRing _toInterface; // EventHead and atom
};

} // namespace platform::lv2

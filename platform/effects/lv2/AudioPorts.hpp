// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The memory of a plug-in's audio and CV ports. The first two inputs and outputs carry the signal.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <lilv/lilv.h>
#include <vector>

namespace platform::lv2 {

class AudioPorts {
  public:
    explicit AudioPorts(const std::vector<Port>& ports);

    [[nodiscard]] std::uint32_t inputChannels() const noexcept {
        return static_cast<std::uint32_t>(_inputs.size());
    }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept {
        return static_cast<std::uint32_t>(_outputs.size());
    }

    /// Connects everything, the ports that carry the signal to the object's own planes for now. No `run`
    /// may be in progress.
    void connect(LilvInstance* instance);
    /// Connects the ports to these planes for a run. If these have fewer than `blockFrames` frames, to the
    /// object's own planes of that length: some plug-ins trust the length that they were told and read and
    /// write that much, whatever is requested. Audio side.
    void connectSignal(LilvInstance* instance, ConstPlanarSound inputs, PlanarSound outputs,
                       std::uint32_t blockFrames) noexcept;
    /// Copies the run's output from the object's own planes, if it used these. Audio side.
    void takeSignal(PlanarSound outputs) noexcept;

  private:
    struct SignalPort {
        std::uint32_t index;
        const float* connected = nullptr; // at present, so that the port is connected only when that changes
        std::vector<float> own;           // LongestBlock frames
    };

    std::vector<SignalPort> _inputs, _outputs;
    std::vector<std::uint32_t> _silentInputs, _unheardOutputs; // audio and CV ports beyond those
    std::vector<float> _silence, _scratch;
    bool _runsOnOwnPlanes = false; // audio side
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The buffers of a plug-in's audio and CV ports.
#pragma once

#include "platform/effects/lv2/SignalPorts.hpp"
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

    /// Connects all ports, the signal ports to this object's own planes for now. No `run` may be in progress.
    void connect(LilvInstance* instance);
    /// Connects the signal ports to `inputs` and `outputs` for a run. If the planes have fewer than
    /// `blockFrames` frames, copies the input to this object's own planes and connects those instead, because
    /// some plug-ins always read and write the block length that they were created for. Audio thread.
    void connectSignal(LilvInstance* instance, ConstPlanarSound inputs, PlanarSound outputs,
                       std::uint32_t blockFrames) noexcept;
    /// Copies the output of the run to `outputs` if the run used this object's own planes. Audio thread.
    void takeSignal(PlanarSound outputs) noexcept;

  private:
    explicit AudioPorts(SignalPorts ports);
    struct SignalPort {
        std::uint32_t index;
        const float* connected =
            nullptr;            // the current plane; the port is connected again only if that changes
        std::vector<float> own; // LongestBlock frames
    };

    std::vector<SignalPort> _inputs, _outputs;
    std::vector<std::uint32_t> _silentInputs, _unheardOutputs; // see SignalPorts
    std::vector<float> _silence, _scratch;
    bool _runsOnOwnPlanes = false; // audio thread only
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The memory of a plug-in's ports, and what crosses between it and the control side: values of controls as
// atomics, events in rings. The memory outlives an instance: another one at another rate is connected to it.
#pragma once

#include "platform/effects/lv2/AudioPorts.hpp"
#include "platform/effects/lv2/ControlPorts.hpp"
#include "platform/effects/lv2/EventPorts.hpp"

namespace platform::lv2 {

/// Each part says which of its operations belong to the audio side.
struct PortBuffers {
    /// `sampleRate`: the rate for the controls' defaults.
    PortBuffers(const std::vector<Port>& ports, double sampleRate)
        : audio(ports)
        , controls(ports, sampleRate)
        , events(ports)
        , portCount(static_cast<std::uint32_t>(ports.size())) {}

    /// Connects everything. No `run` may be in progress.
    void connect(LilvInstance* instance) {
        for (std::uint32_t port = 0; port < portCount; ++port) {
            lilv_instance_connect_port(instance, port, nullptr);
        }
        audio.connect(instance);
        controls.connect(instance);
        events.connect(instance);
        beforeRun();
    }
    /// Applies what was set and sent, before a run. Audio side.
    void beforeRun() noexcept {
        controls.beforeRun();
        events.beforeRun();
    }
    /// Passes on the run's output; its first frame is frame `sampleTime` of the engine. Audio side.
    void afterRun(std::int64_t sampleTime, std::uint32_t frames, MIDIOutputDelivery* midi) noexcept {
        controls.afterRun();
        events.afterRun(sampleTime, frames, midi);
    }

    AudioPorts audio;
    ControlPorts controls;
    EventPorts events;
    const std::uint32_t portCount;
};

} // namespace platform::lv2

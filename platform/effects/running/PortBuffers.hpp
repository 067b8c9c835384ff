// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The buffers of a plug-in's ports, and the exchange with the control side: atomics for control values, rings
// for events. The buffers outlive an instance, so that an instance at another sample rate can be connected to
// them.
#pragma once

#include "platform/effects/running/AudioPorts.hpp"
#include "platform/effects/running/ControlPorts.hpp"
#include "platform/effects/running/EventPorts.hpp"

namespace platform::lv2 {

/// The members' comments state which operations belong to the audio thread.
struct PortBuffers {
    /// `sampleRate` is used for default values that depend on it.
    PortBuffers(const std::vector<Port>& ports, double sampleRate)
        : audio(ports)
        , controls(ports, sampleRate)
        , events(ports)
        , portCount(static_cast<std::uint32_t>(ports.size())) {}

    /// Connects all ports. No `run` may be in progress.
    void connect(LilvInstance* instance) {
        for (std::uint32_t port = 0; port < portCount; ++port) {
            lilv_instance_connect_port(instance, port, nullptr);
        }
        audio.connect(instance);
        controls.connect(instance);
        events.connect(instance);
        beforeRun();
    }
    /// Passes new control values and events to the plug-in, before a run. Audio thread.
    void beforeRun() noexcept {
        controls.beforeRun();
        events.beforeRun();
    }
    /// Passes the output values and events to the control side, after a run that began at frame `sampleTime`.
    /// Audio thread.
    void afterRun(std::int64_t sampleTime, std::uint32_t frames, MidiSink* midi) noexcept {
        controls.afterRun();
        events.afterRun(sampleTime, frames, midi);
    }

    AudioPorts audio;
    ControlPorts controls;
    EventPorts events;
    const std::uint32_t portCount;
};

} // namespace platform::lv2

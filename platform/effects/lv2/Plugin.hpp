// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The description of one LV2 plug-in as plain values: read once through lilv and independent of it
// afterwards.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"

#include <optional>
#include <string>
#include <vector>

namespace platform::lv2 {

enum class PortKind {
    AudioInput,
    AudioOutput,
    ControlInput,
    ControlOutput,
    CvInput,
    CvOutput,
    AtomInput,
    AtomOutput,
    Unknown
};

struct Port {
    std::uint32_t index = 0;
    PortKind kind = PortKind::Unknown;
    AUParameter parameter; // of control ports, as at a rate of 1; its address is the port's index
    std::string symbol, name;
    bool isBounded = true;         // the bounds of the parameter are stated, not assumed
    bool followsRate = false;      // the bounds of the parameter are multiples of the sample rate
    bool isOptional = false;       // may stay unconnected
    bool isSideChain = false;      // an audio input that is not the signal
    bool reportsLatency = false;   // a control output
    bool supportsMidi = false;     // an atom port
    bool isControl = false;        // the atom port for messages between plug-in and interface
    std::uint32_t minimumSize = 0; // bytes, of atom ports
};

/// One interface of a plug-in for X11.
struct Interface {
    std::string uri, bundlePath, binaryPath;
    std::vector<std::string> requiredFeatures;
    bool isResizable = true; // otherwise it states that it keeps its size
    struct Notification {
        std::uint32_t port = 0;
        std::string protocol; // URI; empty for the port's own
    };
    std::vector<Notification> notifications; // ports whose events it wants from the start
};

struct Preset {
    std::string uri, label;
};

struct Plugin {
    std::string uri, name, version;
    std::string libraryPath, bundlePath; // the latter ends in "/"
    std::vector<Port> ports;             // by index
    std::vector<std::string> requiredFeatures;
    bool restoresWhileRunning = false; // state may be restored beside run()
    bool wantsDefaultState = false;
};

/// Returns the parameter of a control port at `sampleRate`.
[[nodiscard]] AUParameter parameterAt(const Port& port, double sampleRate);

/// Returns the type that the ports imply: 'aumf' for audio and MIDI in, 'aufx' for audio in, 'aumu' for MIDI
/// in without audio in, 'augn' for neither.
[[nodiscard]] std::uint32_t componentTypeOf(const Plugin& plugin) noexcept;

} // namespace platform::lv2

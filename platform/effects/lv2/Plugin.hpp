// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The description of an LV2 plug-in as plain values, read once through lilv and independent of lilv
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
    AUParameter parameter; // of a control port, for a sample rate of 1; its address is the port's index
    std::string symbol, name;
    bool isBounded = true;         // the plug-in states the parameter's bounds
    bool followsRate = false;      // the parameter's bounds are multiples of the sample rate
    bool isOptional = false;       // may be left unconnected
    bool isSideChain = false;      // an audio input that does not carry the signal
    bool reportsLatency = false;   // a control output with the latency in frames
    bool supportsMidi = false;     // an atom port for MIDI events
    bool isControl = false;        // the atom port for messages between plug-in and interface
    std::uint32_t minimumSize = 0; // of an atom port, in bytes
};

/// An interface of a plug-in.
struct Interface {
    enum class Kind {
        X11,
        Gtk2,
        Qt5,
        External, // opens windows of its own instead of being embedded
    };
    Kind kind = Kind::X11;
    std::string uri, bundlePath, binaryPath;
    std::vector<std::string> requiredFeatures;
    bool isResizable = true; // false if the interface states that its size is fixed
    struct Notification {
        std::uint32_t port = 0;
        std::string protocol; // a URI; empty for the port's default protocol
    };
    std::vector<Notification> notifications; // ports whose events the interface requests
};

struct Preset {
    std::string uri, label;
};

struct Plugin {
    std::string uri, name, version;
    std::string libraryPath, bundlePath; // bundlePath ends in "/"
    std::vector<Port> ports;             // in the order of their indices
    std::vector<std::string> requiredFeatures;
    bool restoresWhileRunning = false; // state may be restored while `run` is in progress
    bool wantsDefaultState = false;
};

/// Returns the parameter of a control port at `sampleRate`.
[[nodiscard]] AUParameter parameterAt(const Port& port, double sampleRate);

/// Returns the component type, which depends on the plug-in's inputs: 'aumf' for audio and MIDI, 'aufx' for
/// audio only, 'aumu' for MIDI only, 'augn' for neither.
[[nodiscard]] std::uint32_t componentTypeOf(const Plugin& plugin) noexcept;

} // namespace platform::lv2

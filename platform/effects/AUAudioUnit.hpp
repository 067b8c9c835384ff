// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The host's interface to an effect. It passes values and bytes, never pointers into the plug-in, so that an
// effect in a separate process can be implemented behind the same interface. Unless stated otherwise, the
// operations may be called on any thread except the audio thread. Only `processor()` processes sound.
#pragma once

#include "platform/audio/NodeProcessor.hpp"
#include "platform/foundation/Error.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace platform {

class UIViewController;

/// A named set of parameter values.
class AUAudioUnitPreset {
  public:
    AUAudioUnitPreset(std::int64_t number, std::string name)
        : _number(number)
        , _name(std::move(name)) {}

    /// Returns the index of the preset among the factory presets, counted from 0.
    [[nodiscard]] std::int64_t number() const noexcept { return _number; }
    [[nodiscard]] const std::string& name() const noexcept { return _name; }

    friend bool operator==(const AUAudioUnitPreset&, const AUAudioUnitPreset&) = default;

  private:
    std::int64_t _number;
    std::string _name;
};

/// A value of the effect that can be set or displayed.
struct AUParameter {
    struct NamedValue {
        float value = 0;
        std::string name;
    };

    std::uint32_t address = 0; // identifies the parameter in the operations of AUAudioUnit
    std::string identifier; // short: letters, digits and underscores; the same in all versions of the effect
    std::string displayName;
    std::string unitName; // such as "dB" or "Hz"; empty if there is none
    float minValue = 0;
    float maxValue = 1;
    float defaultValue = 0;
    bool isWritable = true;               // false: an output of the effect
    bool isToggle = false;                // 0 or less: off; more: on
    bool isInteger = false;               // only integer values
    bool isLogarithmic = false;           // best shown on a logarithmic scale
    bool isHidden = false;                // not meant to be shown to users
    std::vector<NamedValue> valueStrings; // in ascending order of their values
    bool isEnumeration = false;           // only the named values are allowed
};

/// Receives one MIDI event of the effect: the sample time, the cable, the number of bytes, and the bytes,
/// which are valid only during the call. Returns 0.
using MIDIOutputEventBlock = std::function<std::int32_t(std::int64_t sampleTime, std::uint8_t cable,
                                                        std::int64_t length, const std::uint8_t* data)>;

class AUAudioUnit : public std::enable_shared_from_this<AUAudioUnit> {
  public:
    AUAudioUnit() = default;
    virtual ~AUAudioUnit() = default;
    AUAudioUnit(const AUAudioUnit&) = delete;
    AUAudioUnit& operator=(const AUAudioUnit&) = delete;

    /// Returns the object that processes the sound. Only the engine uses it.
    [[nodiscard]] virtual std::shared_ptr<NodeProcessor> processor() = 0;

    /// Returns the name that the host has given to the context in which it uses the effect.
    [[nodiscard]] virtual std::string contextName() const = 0;
    virtual void setContextName(std::string name) = 0;

    /// Returns the presets that come with the effect, in a stable order; no value if it has none.
    [[nodiscard]] virtual std::optional<std::vector<AUAudioUnitPreset>> factoryPresets() const = 0;
    /// Returns the preset that was set last; no value if none was set, or if `setFullState` was called since.
    [[nodiscard]] virtual std::optional<AUAudioUnitPreset> currentPreset() const = 0;
    /// Applies the factory preset with the number of `preset`. With no value, only clears the current preset.
    /// Reports an unknown number on standard error.
    virtual void setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset) = 0;

    /// Returns the names of the effect's MIDI outputs.
    [[nodiscard]] virtual std::vector<std::string> MIDIOutputNames() const = 0;
    /// Sets the block that receives every MIDI event of the effect, in order, on a delivery thread of the
    /// unit. An empty block stops the delivery.
    virtual void setMIDIOutputEventBlock(MIDIOutputEventBlock block) = 0;
    /// Sends one MIDI message to the effect, which receives it at the start of the next block. Returns false
    /// if the effect has no MIDI input or its queue is full.
    virtual bool sendMIDIEvent(std::span<const std::uint8_t> message) = 0;

    [[nodiscard]] virtual std::vector<AUParameter> parameters() const = 0;
    /// Returns the current value, or 0 for an unknown address.
    [[nodiscard]] virtual float parameterValue(std::uint32_t address) const = 0;
    /// Sets the value, clamped to its range; the effect uses it from the next block on. Does nothing if the
    /// address is unknown, the parameter is not writable, or `value` is NaN.
    virtual void setParameterValue(std::uint32_t address, float value) = 0;

    /// Returns the latency: the number of frames that the output lags behind the input.
    [[nodiscard]] virtual std::uint32_t latencyFrames() const = 0;

    /// Returns all settings as bytes that `setFullState` of the same effect accepts, at any sample rate. If
    /// the effect fails to save them, reports that on standard error and returns no bytes.
    [[nodiscard]] virtual std::vector<std::uint8_t> fullState() const = 0;
    /// Restores all settings from the bytes of `fullState`. Bytes of another effect change nothing and return
    /// an error.
    virtual std::optional<Error> setFullState(std::span<const std::uint8_t> state) = 0;

    /// Requests a controller for the effect's interface. The completion is called once, later, on the main
    /// thread, with the controller, or with null if the interface fails. An effect without an interface of
    /// its own gets a generic one with its parameters.
    virtual void requestViewController(std::function<void(std::shared_ptr<UIViewController>)> completion) = 0;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect as its host sees it. The interface passes values and bytes, never a pointer into the plug-in, so
// that an effect in a process of its own is one more implementation. Unless stated otherwise any thread
// except the audio thread may call; sound goes only through `processor()`.
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

/// A named setting of all parameters.
class AUAudioUnitPreset {
  public:
    AUAudioUnitPreset(std::int64_t number, std::string name)
        : _number(number)
        , _name(std::move(name)) {}

    /// Returns the index among the factory presets, from 0.
    [[nodiscard]] std::int64_t number() const noexcept { return _number; }
    [[nodiscard]] const std::string& name() const noexcept { return _name; }

    friend bool operator==(const AUAudioUnitPreset&, const AUAudioUnitPreset&) = default;

  private:
    std::int64_t _number;
    std::string _name;
};

/// One value of the effect that a person or a host can set or watch.
struct AUParameter {
    struct NamedValue {
        float value = 0;
        std::string name;
    };

    std::uint32_t address = 0; // identifies it in the operations of AUAudioUnit
    std::string identifier;    // short, of letters, digits and underscores; stable between versions
    std::string displayName;
    std::string unitName; // "dB", "Hz"; empty if there is none
    float minValue = 0;
    float maxValue = 1;
    float defaultValue = 0;
    bool isWritable = true;               // else the effect reports it
    bool isToggle = false;                // off up to 0, on above
    bool isInteger = false;               // whole numbers only
    bool isLogarithmic = false;           // equal ratios feel like equal steps
    bool isHidden = false;                // not meant to be shown to a person
    std::vector<NamedValue> valueStrings; // named values, in rising order
    bool isEnumeration = false;           // only the named values
};

/// Receives one MIDI event of the effect: the sample time, the cable, the number of bytes and the bytes,
/// which are valid during the call. Returns 0.
using MIDIOutputEventBlock = std::function<std::int32_t(std::int64_t sampleTime, std::uint8_t cable,
                                                        std::int64_t length, const std::uint8_t* data)>;

class AUAudioUnit : public std::enable_shared_from_this<AUAudioUnit> {
  public:
    AUAudioUnit() = default;
    virtual ~AUAudioUnit() = default;
    AUAudioUnit(const AUAudioUnit&) = delete;
    AUAudioUnit& operator=(const AUAudioUnit&) = delete;

    /// Returns the part that makes the sound; only the engine uses it.
    [[nodiscard]] virtual std::shared_ptr<NodeProcessor> processor() = 0;

    /// Returns the host's name for the place in which it runs the effect.
    [[nodiscard]] virtual std::string contextName() const = 0;
    virtual void setContextName(std::string name) = 0;

    /// Returns the presets that come with the effect, in a stable order; absent if it has none.
    [[nodiscard]] virtual std::optional<std::vector<AUAudioUnitPreset>> factoryPresets() const = 0;
    /// Returns the preset that was set last; absent if none was, or if parameters were set by full state.
    [[nodiscard]] virtual std::optional<AUAudioUnitPreset> currentPreset() const = 0;
    /// Sets everything that the factory preset of that number contains; absent clears the current one and
    /// changes nothing else. An unknown number is reported on standard error.
    virtual void setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset) = 0;

    /// Returns the names of the outputs on which the effect may send MIDI.
    [[nodiscard]] virtual std::vector<std::string> MIDIOutputNames() const = 0;
    /// Passes every MIDI event of the effect to `block`, in order, on a delivery thread of the unit; an empty
    /// block stops that. The block stays until it is replaced.
    virtual void setMIDIOutputEventBlock(MIDIOutputEventBlock block) = 0;
    /// Sends one MIDI message to the effect; it arrives at the start of the next block. Returns whether it
    /// was accepted: an effect without a MIDI input accepts none, nor is one accepted while its queue is
    /// full.
    virtual bool sendMIDIEvent(std::span<const std::uint8_t> message) = 0;

    [[nodiscard]] virtual std::vector<AUParameter> parameters() const = 0;
    /// Returns the value now; 0 for an unknown address.
    [[nodiscard]] virtual float parameterValue(std::uint32_t address) const = 0;
    /// Sets the value, limited to its range; the effect uses it from its next block. An unknown address, one
    /// that is not writable, or NaN changes nothing.
    virtual void setParameterValue(std::uint32_t address, float value) = 0;

    /// Returns the frames by which the output lags the input.
    [[nodiscard]] virtual std::uint32_t latencyFrames() const = 0;

    /// Returns everything that was set, as bytes that `setFullState` of the same effect accepts, at any rate.
    [[nodiscard]] virtual std::vector<std::uint8_t> fullState() const = 0;
    /// Sets everything from bytes of `fullState`; what does not belong to this effect changes nothing.
    virtual std::optional<Error> setFullState(std::span<const std::uint8_t> state) = 0;

    /// Requests the effect's own screen. The completion is called once, later, on the main thread, with the
    /// controller, or with none if the effect's interface fails. An effect without an interface gets a plain
    /// one with its parameters.
    virtual void requestViewController(std::function<void(std::shared_ptr<UIViewController>)> completion) = 0;
};

} // namespace platform

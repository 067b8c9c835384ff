// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect as its host sees it. The interface hands out values and bytes, never a pointer into the plug-in,
// so that an effect in a process of its own is one more implementation.
// Unless said otherwise any thread but the audio thread may call; sound goes through `processor()` alone.
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

/// A setting of all parameters that has a name.
class AUAudioUnitPreset {
  public:
    AUAudioUnitPreset(std::int64_t number, std::string name)
        : _number(number)
        , _name(std::move(name)) {}

    /// Returns the place among the factory presets, from 0.
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

    std::uint32_t address = 0; // what the operations of AUAudioUnit take
    std::string identifier;    // short, of letters, digits and underscores; stable between versions
    std::string displayName;
    std::string unitName; // "dB", "Hz"; empty when there is none
    float minValue = 0;
    float maxValue = 1;
    float defaultValue = 0;
    bool isWritable = true;               // else the effect reports it
    bool isToggle = false;                // off up to 0, on above
    bool isInteger = false;               // whole numbers only
    bool isLogarithmic = false;           // steps that feel equal are ratios
    bool isHidden = false;                // not meant for a person's eye
    std::vector<NamedValue> valueStrings; // values with a name, in rising order
    bool isEnumeration = false;           // no values but those with a name
};

/// Takes one MIDI event of the effect: the sample time, the cable, the number of bytes and the bytes, which
/// are valid during the call. Answers 0.
using MIDIOutputEventBlock = std::function<std::int32_t(std::int64_t sampleTime, std::uint8_t cable,
                                                        std::int64_t length, const std::uint8_t* data)>;

class AUAudioUnit : public std::enable_shared_from_this<AUAudioUnit> {
  public:
    AUAudioUnit() = default;
    virtual ~AUAudioUnit() = default;
    AUAudioUnit(const AUAudioUnit&) = delete;
    AUAudioUnit& operator=(const AUAudioUnit&) = delete;

    /// Returns the part that makes the sound; the engine is its one user.
    [[nodiscard]] virtual std::shared_ptr<NodeProcessor> processor() = 0;

    /// Returns what the host calls the place in which it runs the effect.
    [[nodiscard]] virtual std::string contextName() const = 0;
    virtual void setContextName(std::string name) = 0;

    /// Returns the presets that come with the effect, in a stable order; absent when it has none.
    [[nodiscard]] virtual std::optional<std::vector<AUAudioUnitPreset>> factoryPresets() const = 0;
    /// Returns the preset that was set last; absent when none was, or parameters were set by full state.
    [[nodiscard]] virtual std::optional<AUAudioUnitPreset> currentPreset() const = 0;
    /// Sets all that the factory preset of that number holds; absent forgets the current one and changes
    /// nothing else. An unknown number is said on standard error.
    virtual void setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset) = 0;

    /// Returns the names of the outputs on which the effect may send MIDI.
    [[nodiscard]] virtual std::vector<std::string> MIDIOutputNames() const = 0;
    /// Have every MIDI event of the effect handed to `block`, in order, on a delivery thread of the unit's
    /// own; an empty block ends it. The block stays until it is replaced.
    virtual void setMIDIOutputEventBlock(MIDIOutputEventBlock block) = 0;
    /// Sends one MIDI message to the effect; it arrives at the start of the next block. Says whether it was
    /// taken: not by an effect without a MIDI input, nor when its queue is full.
    virtual bool sendMIDIEvent(std::span<const std::uint8_t> message) = 0;

    [[nodiscard]] virtual std::vector<AUParameter> parameters() const = 0;
    /// Returns the value now; 0 for an unknown address.
    [[nodiscard]] virtual float parameterValue(std::uint32_t address) const = 0;
    /// Sets the value, limited to its range; the effect takes it at its next block. An unknown address, one
    /// that is not writable, or no number changes nothing.
    virtual void setParameterValue(std::uint32_t address, float value) = 0;

    /// Returns the frames by which the output lags the input.
    [[nodiscard]] virtual std::uint32_t latencyFrames() const = 0;

    /// Returns everything that was set, as bytes that `setFullState` of the same effect takes, at any rate.
    [[nodiscard]] virtual std::vector<std::uint8_t> fullState() const = 0;
    /// Sets everything from bytes of `fullState`; what does not belong to this effect changes nothing.
    virtual std::optional<Error> setFullState(std::span<const std::uint8_t> state) = 0;

    /// Asks for the effect's own screen. The completion is called once, later, on the main thread, with the
    /// controller, or with none when the effect's interface fails. An effect without an interface gets a
    /// plain one with its parameters.
    virtual void requestViewController(std::function<void(std::shared_ptr<UIViewController>)> completion) = 0;
};

} // namespace platform

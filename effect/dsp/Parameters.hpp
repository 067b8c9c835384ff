// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The table of the effect's controls, which the audio code, the Turtle descriptions, the graphical interface
// and the tests all use. Immutable data; any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tonewright::effect {

/// The controls, in the order of the plug-in's control input ports.
enum class Parameter : std::uint8_t {
    Drive,
    Shape,
    Bias,
    EnvelopeToDrive,
    FilterMode,
    Cutoff,
    Resonance,
    KeyTrack,
    EnvelopeToCutoff,
    Attack,
    Release,
    Note,
    Voicing,
    Decay,
    Damping,
    Glide,
    ResonatorMix,
    Sensitivity,
    Gate,
    MidiOut,
    Oversampling,
    Mix,
    Output,
    Enabled,
};

inline constexpr std::size_t ParameterCount = 24;

/// Groups of controls on the panel.
enum class Section : std::uint8_t { Drive, Filter, Envelope, Resonator, Onsets, Output };

/// The unit of a value.
enum class Unit : std::uint8_t {
    None,
    Decibel,
    Hertz,
    Milliseconds,
    Seconds,
    Percent,
    Semitones,
    MidiNote,
};

/// The mapping from knob travel to values.
enum class Curve : std::uint8_t { Linear, Logarithmic, Integer, Choice, Toggle };

// Values of Parameter::Shape.
enum class Shape : std::uint8_t { Clean, Warm, Tube, Clip, Fold, Octave };
inline constexpr std::size_t ShapeCount = 6;

// Values of Parameter::FilterMode.
enum class FilterMode : std::uint8_t { Off, LowPass12, LowPass24, BandPass, HighPass12, HighPass24, Notch };
inline constexpr std::size_t FilterModeCount = 7;

// Values of Parameter::Voicing.
enum class Voicing : std::uint8_t { Unison, Octaves, Fifths, Major, Minor, Suspended, HeldChord };
inline constexpr std::size_t VoicingCount = 7;

// Values of Parameter::MidiOut.
enum class MidiOut : std::uint8_t { Off, Held, Root };

// Values of Parameter::Oversampling.
enum class Oversampling : std::uint8_t { Twice, FourTimes };

/// Describes one control.
struct ParameterInfo {
    std::string_view symbol; ///< port symbol, a valid C identifier
    std::string_view name;   ///< full name, for hosts
    std::string_view label;  ///< short name, for the panel
    Section section;
    float minimum;
    float maximum;
    float defaultValue;
    Unit unit = Unit::None;
    Curve curve = Curve::Linear;
    std::span<const std::string_view> choices = {}; ///< names of the values 0, 1, ... of a Choice
    std::string_view comment;                       ///< one sentence of help for users
};

using ParameterValues = std::array<float, ParameterCount>;

[[nodiscard]] constexpr std::size_t index(Parameter parameter) noexcept {
    return static_cast<std::size_t>(parameter);
}

/// Returns the whole table, indexed by Parameter.
[[nodiscard]] std::span<const ParameterInfo, ParameterCount> parameterTable() noexcept;

/// Returns one row of the table.
[[nodiscard]] const ParameterInfo& info(Parameter parameter) noexcept;

/// Returns the default values of all controls.
[[nodiscard]] ParameterValues defaultValues() noexcept;

/// Returns the control with this port symbol, or no value.
[[nodiscard]] std::optional<Parameter> findParameter(std::string_view symbol) noexcept;

/// Returns whether the control has only integer values.
[[nodiscard]] bool hasSteps(const ParameterInfo& parameter) noexcept;

/// Clamps `value` to the control's range, and rounds it if the control has steps. Returns the default for
/// NaN.
[[nodiscard]] float sanitised(const ParameterInfo& parameter, float value) noexcept;

/// Maps a value to knob travel 0..1.
[[nodiscard]] float toTravel(const ParameterInfo& parameter, float value) noexcept;

/// Maps knob travel 0..1 to a value, rounded if the control has steps.
[[nodiscard]] float fromTravel(const ParameterInfo& parameter, float travel) noexcept;

/// Returns a value with its unit as displayed ("1.25 kHz", "C3", "-6.0 dB").
[[nodiscard]] std::string valueText(const ParameterInfo& parameter, float value);

/// Returns the name of a MIDI note, C4 for 60.
[[nodiscard]] std::string noteName(int note);

/// Parses a value that the user typed ("1.2k", "440", "-6 dB", "a2", "tube"), or returns no value if `text`
/// is invalid.
[[nodiscard]] std::optional<float> parseValue(const ParameterInfo& parameter, std::string_view text);

} // namespace tonewright::effect

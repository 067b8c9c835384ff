// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Parameters.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {
namespace {

using namespace std::string_view_literals;

constexpr std::array ShapeNames{"Clean"sv, "Warm"sv, "Tube"sv, "Clip"sv, "Fold"sv, "Octave"sv};
constexpr std::array FilterModeNames{"Off"sv,     "Low 12"sv,  "Low 24"sv, "Band"sv,
                                     "High 12"sv, "High 24"sv, "Notch"sv};
constexpr std::array VoicingNames{"Unison"sv, "Octaves"sv,   "Fifths"sv,    "Major"sv,
                                  "Minor"sv,  "Suspended"sv, "Held chord"sv};
constexpr std::array MidiOutNames{"Off"sv, "Held note"sv, "Root note"sv};
constexpr std::array OversamplingNames{"2x"sv, "4x"sv};
static_assert(ShapeNames.size() == ShapeCount);
static_assert(FilterModeNames.size() == FilterModeCount);
static_assert(VoicingNames.size() == VoicingCount);

constexpr std::array<ParameterInfo, ParameterCount> Table{{
    {"drive",
     "Drive",
     "Drive",
     Section::Drive,
     0.F,
     36.F,
     6.F,
     Unit::Decibel,
     Curve::Linear,
     {},
     "Gain into the shaper; the loudness stays about the same."},
    {"shape", "Drive Shape", "Shape", Section::Drive, 0.F, 5.F, 1.F, Unit::None, Curve::Choice, ShapeNames,
     "The curve that bends the signal; Clean leaves it alone."},
    {"bias",
     "Drive Bias",
     "Bias",
     Section::Drive,
     0.F,
     100.F,
     0.F,
     Unit::Percent,
     Curve::Linear,
     {},
     "Pushes the signal off centre before the shaper, for even harmonics."},
    {"env_drive",
     "Envelope to Drive",
     "Env",
     Section::Drive,
     -24.F,
     24.F,
     0.F,
     Unit::Decibel,
     Curve::Linear,
     {},
     "How far the input's loudness raises or lowers the drive."},
    {"filter_mode", "Filter Mode", "Mode", Section::Filter, 0.F, 6.F, 2.F, Unit::None, Curve::Choice,
     FilterModeNames, "The filter's response; Off leaves the signal alone."},
    {"cutoff",
     "Filter Cutoff",
     "Cutoff",
     Section::Filter,
     20.F,
     20000.F,
     4000.F,
     Unit::Hertz,
     Curve::Logarithmic,
     {},
     "Corner or centre frequency of the filter."},
    {"resonance",
     "Filter Resonance",
     "Reso",
     Section::Filter,
     0.F,
     100.F,
     20.F,
     Unit::Percent,
     Curve::Linear,
     {},
     "Peak at the cutoff frequency."},
    {"key_track",
     "Filter Key Tracking",
     "Track",
     Section::Filter,
     0.F,
     100.F,
     50.F,
     Unit::Percent,
     Curve::Linear,
     {},
     "How far played notes carry the cutoff along; C4 leaves it where it is."},
    {"env_cutoff",
     "Envelope to Cutoff",
     "Env",
     Section::Filter,
     -48.F,
     48.F,
     12.F,
     Unit::Semitones,
     Curve::Linear,
     {},
     "How far the input's loudness opens or closes the filter."},
    {"attack",
     "Envelope Attack",
     "Attack",
     Section::Envelope,
     0.5F,
     200.F,
     5.F,
     Unit::Milliseconds,
     Curve::Logarithmic,
     {},
     "How fast the envelope follower rises."},
    {"release",
     "Envelope Release",
     "Release",
     Section::Envelope,
     5.F,
     2000.F,
     150.F,
     Unit::Milliseconds,
     Curve::Logarithmic,
     {},
     "How fast the envelope follower falls."},
    {"note",
     "Resonator Note",
     "Note",
     Section::Resonator,
     24.F,
     96.F,
     48.F,
     Unit::MidiNote,
     Curve::Integer,
     {},
     "Root of the resonators until a note is played."},
    {"voicing", "Resonator Voicing", "Voicing", Section::Resonator, 0.F, 6.F, 2.F, Unit::None, Curve::Choice,
     VoicingNames, "The chord the four resonators form above the root; Held chord follows the keys."},
    {"decay",
     "Resonator Decay",
     "Decay",
     Section::Resonator,
     0.05F,
     20.F,
     1.5F,
     Unit::Seconds,
     Curve::Logarithmic,
     {},
     "Time in which the resonators fall by 60 dB."},
    {"damping",
     "Resonator Damping",
     "Damp",
     Section::Resonator,
     0.F,
     100.F,
     30.F,
     Unit::Percent,
     Curve::Linear,
     {},
     "How much faster the high partials die."},
    {"glide",
     "Resonator Glide",
     "Glide",
     Section::Resonator,
     0.F,
     1000.F,
     30.F,
     Unit::Milliseconds,
     Curve::Linear,
     {},
     "Time the resonators take to reach a new note."},
    {"resonator_mix",
     "Resonator Mix",
     "Mix",
     Section::Resonator,
     0.F,
     100.F,
     25.F,
     Unit::Percent,
     Curve::Linear,
     {},
     "Share of the resonators in the effect's sound."},
    {"sensitivity",
     "Onset Sensitivity",
     "Sens",
     Section::Onsets,
     0.F,
     100.F,
     60.F,
     Unit::Percent,
     Curve::Linear,
     {},
     "How small a rise in loudness counts as an onset."},
    {"gate",
     "Onset Note Length",
     "Length",
     Section::Onsets,
     10.F,
     1000.F,
     80.F,
     Unit::Milliseconds,
     Curve::Logarithmic,
     {},
     "Length of the note sent for an onset."},
    {"midi_out", "Onset Notes", "Send", Section::Onsets, 0.F, 2.F, 1.F, Unit::None, Curve::Choice,
     MidiOutNames, "Which pitch an onset sends: the note held on the keys, always the root, or none."},
    {"oversampling", "Oversampling", "Quality", Section::Output, 0.F, 1.F, 1.F, Unit::None, Curve::Choice,
     OversamplingNames, "How finely the shaper works; the latency is the same."},
    {"mix",
     "Dry/Wet Mix",
     "Mix",
     Section::Output,
     0.F,
     100.F,
     100.F,
     Unit::Percent,
     Curve::Linear,
     {},
     "Balance between the input and the effect, aligned in time."},
    {"output",
     "Output Gain",
     "Level",
     Section::Output,
     -24.F,
     24.F,
     0.F,
     Unit::Decibel,
     Curve::Linear,
     {},
     "Level at the very end."},
    {"enabled",
     "Enabled",
     "On",
     Section::Output,
     0.F,
     1.F,
     1.F,
     Unit::None,
     Curve::Toggle,
     {},
     "Off passes the input through, aligned in time."},
}};

constexpr std::array NoteNames{"C"sv,  "C#"sv, "D"sv,  "D#"sv, "E"sv,  "F"sv,
                               "F#"sv, "G"sv,  "G#"sv, "A"sv,  "A#"sv, "B"sv};

bool hasSteps(Curve curve) noexcept {
    return curve == Curve::Integer || curve == Curve::Choice || curve == Curve::Toggle;
}

std::string formatted(const char* format, double value) {
    std::array<char, 32> text{};
    const int length = std::snprintf(text.data(), text.size(), format, value);
    return {text.data(), static_cast<std::size_t>(std::max(length, 0))};
}

char lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool startsWithIgnoringCase(std::string_view whole, std::string_view start) noexcept {
    return whole.size() >= start.size() && std::equal(start.begin(), start.end(), whole.begin(),
                                                      [](char a, char b) { return lower(a) == lower(b); });
}

// "a3", "C#4", "Db2": octaves follow the MIDI convention C4 = 60.
std::optional<float> parseNote(std::string_view text) {
    constexpr std::array<int, 7> Semitones{9, 11, 0, 2, 4, 5, 7};
    const char letter = text.empty() ? '\0' : lower(text.front());
    if (letter < 'a' || letter > 'g') {
        return std::nullopt;
    }
    int note = Semitones[static_cast<std::size_t>(letter - 'a')];
    text.remove_prefix(1);
    if (!text.empty() && (text.front() == '#' || lower(text.front()) == 'b')) {
        note += text.front() == '#' ? 1 : -1;
        text.remove_prefix(1);
    }
    bool negative = false;
    if (!text.empty() && text.front() == '-') {
        negative = true;
        text.remove_prefix(1);
    }
    if (text.size() != 1 || text.front() < '0' || text.front() > '9') {
        return std::nullopt;
    }
    const int octave = (text.front() - '0') * (negative ? -1 : 1);
    return static_cast<float>(note + 12 * (octave + 1));
}

} // namespace

std::span<const ParameterInfo, ParameterCount> parameterTable() noexcept {
    return Table;
}

const ParameterInfo& info(Parameter parameter) noexcept {
    return Table[index(parameter)];
}

ParameterValues defaultValues() noexcept {
    ParameterValues values{};
    std::transform(Table.begin(), Table.end(), values.begin(),
                   [](const ParameterInfo& p) { return p.defaultValue; });
    return values;
}

std::optional<Parameter> findParameter(std::string_view symbol) noexcept {
    const auto* const found = std::find_if(Table.begin(), Table.end(),
                                           [symbol](const ParameterInfo& p) { return p.symbol == symbol; });
    if (found == Table.end()) {
        return std::nullopt;
    }
    return static_cast<Parameter>(found - Table.begin());
}

float sanitised(const ParameterInfo& parameter, float value) noexcept {
    if (std::isnan(value)) {
        return parameter.defaultValue;
    }
    const float inside = std::clamp(value, parameter.minimum, parameter.maximum);
    return hasSteps(parameter.curve) ? std::nearbyint(inside) : inside;
}

float toTravel(const ParameterInfo& parameter, float value) noexcept {
    const float inside = sanitised(parameter, value);
    if (parameter.curve == Curve::Logarithmic) {
        return std::log(inside / parameter.minimum) / std::log(parameter.maximum / parameter.minimum);
    }
    return (inside - parameter.minimum) / (parameter.maximum - parameter.minimum);
}

float fromTravel(const ParameterInfo& parameter, float travel) noexcept {
    const float inside = std::clamp(travel, 0.F, 1.F);
    if (parameter.curve == Curve::Logarithmic) {
        return sanitised(parameter,
                         parameter.minimum * std::pow(parameter.maximum / parameter.minimum, inside));
    }
    return sanitised(parameter, parameter.minimum + inside * (parameter.maximum - parameter.minimum));
}

std::string valueText(const ParameterInfo& parameter, float value) {
    const float inside = sanitised(parameter, value);
    if (parameter.curve == Curve::Toggle) {
        return inside > 0.5F ? "On" : "Off";
    }
    if (parameter.curve == Curve::Choice) {
        return std::string{parameter.choices[static_cast<std::size_t>(inside)]};
    }
    switch (parameter.unit) {
    case Unit::Decibel:
        return formatted(std::abs(inside) < 0.05F ? "0.0 dB"
                                                  : (parameter.minimum < 0.F ? "%+.1f dB" : "%.1f dB"),
                         static_cast<double>(inside));
    case Unit::Hertz:
        return inside < 999.5F   ? formatted("%.0f Hz", static_cast<double>(inside))
               : inside < 9995.F ? formatted("%.2f kHz", static_cast<double>(inside) / 1000.)
                                 : formatted("%.1f kHz", static_cast<double>(inside) / 1000.);
    case Unit::Milliseconds:
        return formatted(inside < 9.95F ? "%.1f ms" : "%.0f ms", static_cast<double>(inside));
    case Unit::Seconds:
        return formatted(inside < 9.995F ? "%.2f s" : "%.1f s", static_cast<double>(inside));
    case Unit::Percent:
        return formatted("%.0f %%", static_cast<double>(inside));
    case Unit::Semitones:
        return formatted(std::abs(inside) < 0.05F ? "0.0 st" : "%+.1f st", static_cast<double>(inside));
    case Unit::MidiNote:
        return noteName(static_cast<int>(inside));
    case Unit::None:
        break;
    }
    return formatted("%g", static_cast<double>(inside));
}

std::string noteName(int note) {
    const int inside = std::clamp(note, 0, 127);
    return std::string{NoteNames[static_cast<std::size_t>(inside % 12)]} + std::to_string(inside / 12 - 1);
}

std::optional<float> parseValue(const ParameterInfo& parameter, std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    if (parameter.curve == Curve::Choice) {
        for (std::size_t i = 0; i < parameter.choices.size(); ++i) {
            if (startsWithIgnoringCase(parameter.choices[i], text)) {
                return static_cast<float>(i);
            }
        }
        return std::nullopt;
    }
    if (parameter.unit == Unit::MidiNote) {
        if (const auto note = parseNote(text)) {
            return sanitised(parameter, *note);
        }
    }
    const std::string terminated{text};
    char* end = nullptr;
    const float number = std::strtof(terminated.c_str(), &end);
    if (end == terminated.c_str() || !std::isfinite(number)) {
        return std::nullopt;
    }
    while (*end == ' ') {
        ++end;
    }
    const bool thousands = parameter.unit == Unit::Hertz && lower(*end) == 'k';
    return sanitised(parameter, thousands ? number * 1000.F : number);
}

} // namespace tonewright::effect

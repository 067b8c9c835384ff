// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Parameters.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {
namespace {

using namespace std::string_view_literals;

constexpr std::array NoteNames{"C"sv,  "C#"sv, "D"sv,  "D#"sv, "E"sv,  "F"sv,
                               "F#"sv, "G"sv,  "G#"sv, "A"sv,  "A#"sv, "B"sv};

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

// Parses a note name such as "a3", "C#4" or "Db2". C4 is MIDI note 60.
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

bool hasSteps(const ParameterInfo& parameter) noexcept {
    return parameter.curve == Curve::Integer || parameter.curve == Curve::Choice ||
           parameter.curve == Curve::Toggle;
}

float sanitised(const ParameterInfo& parameter, float value) noexcept {
    if (std::isnan(value)) {
        return parameter.defaultValue;
    }
    const float inside = std::clamp(value, parameter.minimum, parameter.maximum);
    return hasSteps(parameter) ? std::nearbyint(inside) : inside;
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

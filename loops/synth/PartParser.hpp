// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads the music inside a recipe's lines: steps of drum rows, notes of melodies, step lengths, chords.
// Pure; any thread.
#pragma once

#include "Recipe.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tonewright::loops {

/// What is wrong with a piece of text: one clause.
struct PartFault {
    std::string message;
};

template <typename Value>
using Parsed = std::variant<Value, PartFault>;

/// Appends what was parsed to `into`, or returns what is wrong with it.
template <typename Item>
[[nodiscard]] std::string appendTo(std::vector<Item>& into, Parsed<std::vector<Item>> parsed) {
    if (const auto* fault = std::get_if<PartFault>(&parsed)) return fault->message;
    for (Item& item : std::get<std::vector<Item>>(parsed)) {
        into.push_back(std::move(item));
    }
    return {};
}

/// Reads a step length, "1/16" or "1/8t" (a triplet), as ticks.
[[nodiscard]] std::optional<int> gridOf(std::string_view text);

/// Reads a drum row: X accent, x stroke, o soft, r two strokes, t three, . nothing; blanks and bars do not
/// count.
[[nodiscard]] Parsed<std::vector<Hit>> hitsOf(std::string_view text);

/// Reads the rhythm of a chordal part: X, x, o, "-" held, "." rest, "s" short.
[[nodiscard]] Parsed<std::vector<Cell>> chordCellsOf(std::string_view text);

/// Reads notes separated by blanks: "5", "b3", "8'", "1+3+5", "~5" slides, "-" holds, "." rests; then "!"
/// loud,
/// "?" soft, "*" short.
[[nodiscard]] Parsed<std::vector<Cell>> noteCellsOf(std::string_view text);

/// Reads bars of chords separated by "|"; "%" repeats the bar before. Gives one list of chords per bar.
[[nodiscard]] Parsed<std::vector<std::vector<Chord>>> chordBarsOf(std::string_view text);

} // namespace tonewright::loops

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Parses the music within a recipe's lines: drum steps, notes, step lengths and chords. Pure functions,
// callable from any thread.
#pragma once

#include "Recipe.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tonewright::loops {

/// Describes an error in a piece of text, in one clause.
struct PartFault {
    std::string message;
};

template <typename Value>
using Parsed = std::variant<Value, PartFault>;

/// Appends the parsed items to `into`, or returns the parser's error message.
template <typename Item>
[[nodiscard]] std::string appendTo(std::vector<Item>& into, Parsed<std::vector<Item>> parsed) {
    if (const auto* fault = std::get_if<PartFault>(&parsed)) return fault->message;
    for (Item& item : std::get<std::vector<Item>>(parsed)) {
        into.push_back(std::move(item));
    }
    return {};
}

/// Reads a step length, "1/16" or "1/8t" (a triplet), and returns it in ticks.
[[nodiscard]] std::optional<int> gridOf(std::string_view text);

/// Reads the steps of a drum: X accent, x stroke, o soft, r two strokes, t three strokes, . nothing. Blanks
/// and bar lines are skipped.
[[nodiscard]] Parsed<std::vector<Hit>> hitsOf(std::string_view text);

/// Reads the rhythm of a chordal part: X loud, x normal, o soft, "s" short, "-" held, "." rest.
[[nodiscard]] Parsed<std::vector<Cell>> chordCellsOf(std::string_view text);

/// Reads notes separated by blanks: "5", "b3", "8'", "1+3+5"; "~5" slides, "-" holds, "." rests. A note may
/// end in "!" (loud), "?" (soft) or "*" (short).
[[nodiscard]] Parsed<std::vector<Cell>> noteCellsOf(std::string_view text);

/// Reads bars separated by "|", where "%" repeats the previous bar. Returns one list of chords per bar.
[[nodiscard]] Parsed<std::vector<std::vector<Chord>>> chordBarsOf(std::string_view text);

} // namespace tonewright::loops

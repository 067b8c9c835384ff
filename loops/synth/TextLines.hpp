// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The lines and words of which recipes and sounds are written: one statement a line, words separated by
// blanks, settings as name=number. Pure; any thread.
#pragma once

#include "Settings.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright::loops {

using Words = std::span<const std::string_view>;

/// What is wrong with a text, and where.
struct LineFault {
    std::size_t line = 0; // from 1; 0 when the text as a whole is meant
    std::string message;  // one clause, without a full stop
};

/// One statement: its keyword, the words after it, and the same as text.
struct TextLine {
    std::size_t number = 0; // from 1
    std::vector<std::string_view> words;
    std::string_view rest; // what follows the keyword

    [[nodiscard]] std::string_view keyword() const { return words.front(); }
    [[nodiscard]] Words arguments() const { return Words(words).subspan(1); }
};

/// Calls `read` with each line of `text` that is neither blank nor a comment, until it returns a message;
/// returns that message with its line, or nothing.
[[nodiscard]] std::optional<LineFault> readLines(std::string_view text,
                                                 const std::function<std::string(const TextLine&)>& read);

/// Splits at blanks and tabs.
[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view text);

/// Reads a decimal number, the whole of `text`.
[[nodiscard]] std::optional<double> numberOf(std::string_view text);

/// Reads the one number that is expected, from `least` to `greatest`, into `into`; returns what is wrong with
/// it.
[[nodiscard]] std::string readNumber(Words arguments, double least, double greatest, double& into);

/// Passes each word of the form name=number to `set`; returns the first message, or an empty one.
[[nodiscard]] std::string readSettings(Words words,
                                       const std::function<SettingFault(std::string_view, double)>& set);

/// Returns `text` between single quotes, as messages show it.
[[nodiscard]] std::string quoted(std::string_view text);

} // namespace tonewright::loops

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Splits recipes and sound files into lines and words: one statement per line, words separated by blanks,
// settings in the form name=number. Pure functions, callable from any thread.
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

/// An error in a text and its line.
struct LineFault {
    std::size_t line = 0; // from 1; 0 for an error of the whole text
    std::string message;  // one clause, without a full stop
};

/// One statement: its keyword, the words after the keyword, and the text of these words.
struct TextLine {
    std::size_t number = 0; // from 1
    std::vector<std::string_view> words;
    std::string_view rest; // the text after the keyword

    [[nodiscard]] std::string_view keyword() const { return words.front(); }
    [[nodiscard]] Words arguments() const { return Words(words).subspan(1); }
};

/// Calls `read` with each line of `text` that is neither blank nor a comment until `read` returns a message;
/// returns this message with its line, or no value.
[[nodiscard]] std::optional<LineFault> readLines(std::string_view text,
                                                 const std::function<std::string(const TextLine&)>& read);

/// Splits `text` at blanks and tabs.
[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view text);

/// Reads `text`, all of it, as a decimal number.
[[nodiscard]] std::optional<double> numberOf(std::string_view text);

/// Reads the only argument, a number from `least` to `greatest`, into `into`; returns an error message, or an
/// empty string.
[[nodiscard]] std::string readNumber(Words arguments, double least, double greatest, double& into);

/// Passes each word of the form name=number to `set`; returns the first error message, or an empty string.
[[nodiscard]] std::string readSettings(Words words,
                                       const std::function<SettingFault(std::string_view, double)>& set);

/// Returns `text` in single quotes, as messages show it.
[[nodiscard]] std::string quoted(std::string_view text);

} // namespace tonewright::loops

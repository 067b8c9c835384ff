// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TextLines.hpp"

#include <charconv>
#include <cmath>
#include <utility>

namespace tonewright::loops {

namespace {

bool isBlank(char letter) {
    return letter == ' ' || letter == '\t';
}

} // namespace

std::optional<LineFault> readLines(std::string_view text,
                                   const std::function<std::string(const TextLine&)>& read) {
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        std::string_view content = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (content.ends_with('\r')) content.remove_suffix(1);
        TextLine line{.number = number, .words = wordsOf(content), .rest = {}};
        if (line.words.empty() || line.keyword().front() == '#') continue;
        const std::string_view keyword = line.keyword();
        line.rest =
            content.substr(static_cast<std::size_t>(keyword.data() + keyword.size() - content.data()));
        if (std::string message = read(line); !message.empty()) return LineFault{number, std::move(message)};
    }
    return std::nullopt;
}

std::vector<std::string_view> wordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    std::size_t at = 0;
    while (at < text.size()) {
        while (at < text.size() && isBlank(text[at])) ++at;
        const std::size_t start = at;
        while (at < text.size() && !isBlank(text[at])) ++at;
        if (at > start) words.push_back(text.substr(start, at - start));
    }
    return words;
}

std::optional<double> numberOf(std::string_view text) {
    double value = 0.0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::string readSettings(Words words, const std::function<SettingFault(std::string_view, double)>& set) {
    for (const std::string_view word : words) {
        const std::size_t sign = word.find('=');
        const std::optional<double> value =
            sign == std::string_view::npos ? std::nullopt : numberOf(word.substr(sign + 1));
        if (!value) return quoted(word) + " is not a setting; settings look like cutoff=800";
        if (SettingFault fault = set(word.substr(0, sign), *value); !fault.empty()) return fault;
    }
    return {};
}

std::string readNumber(Words arguments, double least, double greatest, double& into) {
    const std::optional<double> value = arguments.size() == 1 ? numberOf(arguments[0]) : std::nullopt;
    if (!value) return "one number is expected here";
    if (!(*value >= least && *value <= greatest)) {
        return quoted(arguments[0]) + " must lie between " + plainNumber(least) + " and " +
               plainNumber(greatest);
    }
    into = *value;
    return {};
}

std::string quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

} // namespace tonewright::loops

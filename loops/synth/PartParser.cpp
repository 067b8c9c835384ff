// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "PartParser.hpp"

#include "TextLines.hpp"

#include <charconv>

namespace tonewright::loops {

namespace {

constexpr double Loud = 1.0;
constexpr double Plain = 0.78;
constexpr double Soft = 0.45;

bool isBlank(char letter) {
    return letter == ' ' || letter == '\t';
}

/// Reads one degree and removes it from the front of `text`.
std::optional<Cell::Degree> readDegree(std::string_view& text) {
    Cell::Degree degree;
    while (!text.empty() && (text.front() == 'b' || text.front() == '#')) {
        degree.alteration += text.front() == '#' ? 1 : -1;
        text.remove_prefix(1);
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), degree.number);
    if (error != std::errc{} || degree.number < -40 || degree.number > 60) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    while (!text.empty() && (text.front() == '\'' || text.front() == ',')) {
        degree.alteration += text.front() == '\'' ? 12 : -12;
        text.remove_prefix(1);
    }
    return degree;
}

std::optional<Cell> cellOf(std::string_view word) {
    Cell cell;
    if (word == ".") return cell;
    if (word == "-") {
        cell.kind = Cell::Kind::Hold;
        return cell;
    }
    cell.kind = Cell::Kind::Notes;
    if (word.front() == '~') {
        cell.kind = Cell::Kind::Slide;
        word.remove_prefix(1);
    }
    while (true) {
        const std::optional<Cell::Degree> degree = readDegree(word);
        if (!degree) return std::nullopt;
        cell.degrees.push_back(*degree);
        if (word.empty() || word.front() != '+') break;
        word.remove_prefix(1);
    }
    for (const char mark : word) {
        if (mark == '!') {
            cell.velocity = Loud;
        } else if (mark == '?') {
            cell.velocity = Soft;
        } else if (mark == '*') {
            cell.staccato = true;
        } else {
            return std::nullopt;
        }
    }
    return cell;
}

} // namespace

std::optional<int> gridOf(std::string_view text) {
    const bool triplet = !text.empty() && text.back() == 't';
    if (triplet) text.remove_suffix(1);
    for (const int unit : {1, 2, 4, 8, 16, 32}) {
        if (text == "1/" + std::to_string(unit)) {
            const int ticks = 4 * TicksPerQuarter / unit;
            return triplet ? ticks * 2 / 3 : ticks;
        }
    }
    return std::nullopt;
}

Parsed<std::vector<Hit>> hitsOf(std::string_view text) {
    std::vector<Hit> hits;
    for (const char letter : text) {
        switch (letter) {
        case '.':
            hits.push_back({});
            break;
        case 'X':
            hits.push_back({Loud, 1});
            break;
        case 'x':
            hits.push_back({Plain, 1});
            break;
        case 'o':
            hits.push_back({Soft * 0.8, 1});
            break;
        case 'r':
            hits.push_back({Plain * 0.9, 2});
            break;
        case 't':
            hits.push_back({Plain * 0.9, 3});
            break;
        case ' ':
        case '\t':
        case '|':
            break;
        default:
            return PartFault{quoted(std::string_view(&letter, 1)) +
                             " is not a drum stroke; the strokes are X, x, o, r, t and ."};
        }
    }
    if (hits.empty()) return PartFault{"a drum row needs at least one step"};
    return hits;
}

Parsed<std::vector<Cell>> chordCellsOf(std::string_view text) {
    std::vector<Cell> cells;
    for (const char letter : text) {
        if (isBlank(letter) || letter == '|') continue;
        Cell cell{.kind = Cell::Kind::Notes, .degrees = {}, .velocity = Plain, .staccato = false};
        switch (letter) {
        case '.':
            cell.kind = Cell::Kind::Rest;
            break;
        case '-':
            cell.kind = Cell::Kind::Hold;
            break;
        case 'X':
            cell.velocity = Loud;
            break;
        case 'x':
            break;
        case 'o':
            cell.velocity = Soft;
            break;
        case 's':
            cell.staccato = true;
            break;
        default:
            return PartFault{quoted(std::string_view(&letter, 1)) +
                             " is not a chord step; the steps are X, x, o, s, - and ."};
        }
        cells.push_back(std::move(cell));
    }
    if (cells.empty()) return PartFault{"a rhythm needs at least one step"};
    return cells;
}

Parsed<std::vector<Cell>> noteCellsOf(std::string_view text) {
    std::vector<Cell> cells;
    for (const std::string_view word : wordsOf(text)) {
        if (word == "|") continue;
        std::optional<Cell> cell = cellOf(word);
        if (!cell) {
            return PartFault{quoted(word) + " is not a note; notes look like 5, b3, 8', 1+3+5, ~2, - or ."};
        }
        cells.push_back(std::move(*cell));
    }
    if (cells.empty()) return PartFault{"a line needs at least one note"};
    return cells;
}

Parsed<std::vector<std::vector<Chord>>> chordBarsOf(std::string_view text) {
    std::vector<std::vector<Chord>> bars(1);
    for (const std::string_view word : wordsOf(text)) {
        if (word == "|") {
            if (bars.back().empty()) return PartFault{"a bar without a chord"};
            bars.emplace_back();
        } else if (word == "%") {
            if (bars.size() < 2 || !bars.back().empty()) {
                return PartFault{"'%' repeats a bar, but there is none before it"};
            }
            bars.back() = bars[bars.size() - 2];
        } else {
            const std::optional<Chord> chord = chordNamed(word);
            if (!chord) return PartFault{"unknown chord " + quoted(word)};
            bars.back().push_back(*chord);
        }
    }
    if (bars.back().empty()) bars.pop_back(); // a bar line at the end begins no bar
    if (bars.empty()) return PartFault{"no chord"};
    return bars;
}

} // namespace tonewright::loops

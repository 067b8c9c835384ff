// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RecipeParser.hpp"

#include "PartParser.hpp"
#include "TrackParser.hpp"

#include <array>
#include <cmath>
#include <utility>

namespace tonewright::loops {

namespace {

/// Reads a recipe line by line; a message that is not empty ends the reading.
class Reader {
  public:
    explicit Reader(const SoundLibrary& sounds)
        : _sounds(sounds) {}

    std::variant<Recipe, LineFault> read(std::string_view text) {
        if (auto fault = readLines(text, [this](const TextLine& line) { return readLine(line); })) {
            return *std::move(fault);
        }
        return finish();
    }

  private:
    std::string readLine(const TextLine& line) {
        const std::string_view keyword = line.keyword();
        const Words arguments = line.arguments();
        if (keyword == "drums" || keyword == "play") {
            return beginTrack(_recipe, _sounds, line.number, keyword == "drums", arguments);
        }
        if (_recipe.tracks.empty()) return readHead(keyword, line.rest, arguments);
        return readTrackLine(_recipe.tracks.back(), _sounds, keyword, line.rest, arguments);
    }

    // --- the head

    std::string readHead(std::string_view keyword, std::string_view rest, Words arguments) {
        if (keyword == "title") {
            for (const std::string_view word : arguments) {
                _recipe.title += (_recipe.title.empty() ? "" : " ") + std::string(word);
            }
            return _recipe.title.empty() ? "a title needs words" : "";
        }
        if (keyword == "chords") return appendTo(_chordBars, chordBarsOf(rest));
        if (keyword == "room") {
            return readSettings(arguments, [this](std::string_view name, double value) {
                return setRoom(_recipe.room, name, value);
            });
        }
        if (keyword == "metre") return readMetre(arguments);
        if (keyword == "key") return readKey(arguments);
        if (keyword == "swing") return readSwing(arguments);
        double value = 0.0;
        const auto whole = [&](double least, double greatest) {
            std::string fault = readNumber(arguments, least, greatest, value);
            if (fault.empty() && value != std::floor(value)) {
                fault = quoted(keyword) + " must be a whole number";
            }
            return fault;
        };
        if (keyword == "tempo") {
            std::string fault = readNumber(arguments, 40, 240, value);
            _recipe.tempoThousandths = std::llround(value * 1000.0);
            return fault;
        }
        if (keyword == "bars") {
            std::string fault = whole(1, 32);
            _recipe.bars = static_cast<int>(value);
            return fault;
        }
        if (keyword == "rate") {
            std::string fault = whole(44100, 48000);
            if (fault.empty() && value != 44100.0 && value != 48000.0) fault = "'rate' is 44100 or 48000";
            _recipe.rate = static_cast<int>(value);
            return fault;
        }
        if (keyword == "channels") {
            std::string fault = whole(1, 2);
            _recipe.channels = static_cast<int>(value);
            return fault;
        }
        if (keyword == "seed") {
            std::string fault = whole(0, 1000000);
            _recipe.seed = static_cast<std::uint64_t>(value);
            return fault;
        }
        if (keyword == "glue") {
            std::string fault = readNumber(arguments, 0, 1, value);
            _recipe.glue = value;
            return fault;
        }
        return "unknown word " + quoted(keyword) +
               "; the statements before the first part are title, tempo, metre, bars, key, chords, "
               "rate, channels, swing, seed, glue and room; drums or play begins a part";
    }

    std::string readMetre(Words arguments) {
        constexpr std::array<std::pair<std::string_view, std::pair<int, int>>, 10> Metres{{{"4/4", {4, 4}},
                                                                                           {"3/4", {3, 4}},
                                                                                           {"2/4", {2, 4}},
                                                                                           {"5/4", {5, 4}},
                                                                                           {"6/8", {6, 8}},
                                                                                           {"7/8", {7, 8}},
                                                                                           {"9/8", {9, 8}},
                                                                                           {"12/8", {12, 8}},
                                                                                           {"7/4", {7, 4}},
                                                                                           {"5/8", {5, 8}}}};
        for (const auto& [name, parts] : Metres) {
            if (arguments.size() == 1 && arguments[0] == name) {
                _recipe.beats = parts.first;
                _recipe.unit = parts.second;
                return {};
            }
        }
        return "a metre is one of 4/4, 3/4, 2/4, 5/4, 7/4, 5/8, 6/8, 7/8, 9/8, 12/8";
    }

    std::string readKey(Words arguments) {
        if (arguments.size() != 2) return "a key is a note and a scale, such as: key D dorian";
        std::string_view note = arguments[0];
        const std::optional<int> root = readPitchClass(note);
        if (!root || !note.empty()) return "unknown note " + quoted(arguments[0]);
        std::optional<std::vector<int>> scale = scaleNamed(arguments[1]);
        if (!scale) return "unknown scale " + quoted(arguments[1]);
        _recipe.key = {*root, std::move(*scale)};
        return {};
    }

    std::string readSwing(Words arguments) {
        if (arguments.size() == 2) {
            const std::optional<int> grid = gridOf(arguments[1]);
            if (!grid) return "unknown step " + quoted(arguments[1]);
            _recipe.swingTicks = *grid;
            arguments = arguments.first(1);
        }
        return readNumber(arguments, 50, 75, _recipe.swing);
    }

    // --- the whole

    std::variant<Recipe, LineFault> finish() {
        if (_recipe.tracks.empty()) return LineFault{0, "there is no part: 'drums' or 'play' begins one"};
        const double seconds = static_cast<double>(_recipe.frames()) / _recipe.rate;
        if (seconds < 2.0 || seconds > 16.0) {
            return LineFault{0, "the loop would last " + plainNumber(seconds) +
                                    " seconds; loops last from 2 to 16"};
        }
        if (_chordBars.size() > static_cast<std::size_t>(_recipe.bars)) {
            return LineFault{0, "there are chords for " + std::to_string(_chordBars.size()) +
                                    " bars, but only " + std::to_string(_recipe.bars) + " bars"};
        }
        for (int bar = 0; bar < _recipe.bars && !_chordBars.empty(); ++bar) {
            const std::vector<Chord>& chords = _chordBars[static_cast<std::size_t>(bar) % _chordBars.size()];
            const int count = static_cast<int>(chords.size());
            for (int index = 0; index < count; ++index) {
                const int start = bar * _recipe.barTicks();
                _recipe.chords.push_back({start + _recipe.barTicks() * index / count,
                                          start + _recipe.barTicks() * (index + 1) / count,
                                          chords[static_cast<std::size_t>(index)]});
            }
        }
        if (auto fault = faultOfTracks(_recipe)) return *std::move(fault);
        return std::move(_recipe);
    }

    const SoundLibrary& _sounds;
    Recipe _recipe;
    std::vector<std::vector<Chord>> _chordBars;
};

} // namespace

std::variant<Recipe, LineFault> parseRecipe(std::string_view text, const SoundLibrary& sounds) {
    return Reader(sounds).read(text);
}

} // namespace tonewright::loops

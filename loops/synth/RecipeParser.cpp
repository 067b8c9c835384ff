// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "RecipeParser.hpp"

#include "PartParser.hpp"

#include <array>
#include <cmath>
#include <utility>

namespace tonewright::loops {

namespace {

/// Goes through a recipe line by line. A message that is not empty ends it.
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
            return beginTrack(line.number, keyword == "drums", arguments);
        }
        if (_recipe.tracks.empty()) return readHead(keyword, line.rest, arguments);
        return readTrackLine(_recipe.tracks.back(), keyword, line.rest, arguments);
    }

    // --- the head

    std::string readHead(std::string_view keyword, std::string_view rest, Words arguments) {
        if (keyword == "title") {
            for (const std::string_view word : arguments) {
                _recipe.title += (_recipe.title.empty() ? "" : " ") + std::string(word);
            }
            return _recipe.title.empty() ? "a title needs words" : "";
        }
        if (keyword == "chords") return append(_chordBars, chordBarsOf(rest));
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
            std::string fault = number(arguments, least, greatest, value);
            if (fault.empty() && value != std::floor(value)) {
                fault = quoted(keyword) + " must be a whole number";
            }
            return fault;
        };
        if (keyword == "tempo") {
            std::string fault = number(arguments, 40, 240, value);
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
            std::string fault = number(arguments, 0, 1, value);
            _recipe.glue = value;
            return fault;
        }
        return "unknown word " + quoted(keyword) +
               "; before the first part there are title, tempo, metre, bars, key, chords, rate, channels, "
               "swing, seed, "
               "glue, room, and then drums or play";
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
        return number(arguments, 50, 75, _recipe.swing);
    }

    // --- parts

    std::string beginTrack(std::size_t line, bool drums, Words arguments) {
        if (arguments.empty()) {
            return drums ? "'drums' needs the name of a kit" : "'play' needs the name of an instrument";
        }
        Track track;
        track.line = line;
        track.drums = drums;
        track.name = arguments[0];
        if (drums) {
            if (!_sounds.hasKit(track.name)) {
                return "unknown kit " + quoted(track.name) + "; there are " + _sounds.kitNames();
            }
            if (arguments.size() > 1) return "nothing follows the name of a kit";
        } else {
            std::optional<Patch> patch = _sounds.instrument(track.name);
            if (!patch) {
                return "unknown instrument " + quoted(track.name) + "; there are " +
                       _sounds.instrumentNames();
            }
            track.patch = *patch;
            std::string fault =
                readSettings(arguments.subspan(1), [&track](std::string_view name, double value) {
                    return setPatch(track.patch, name, value);
                });
            if (!fault.empty()) return fault;
        }
        _recipe.tracks.push_back(std::move(track));
        return {};
    }

    std::string readTrackLine(Track& track, std::string_view keyword, std::string_view rest,
                              Words arguments) {
        if (keyword == "level") return number(arguments, -40, 20, track.level);
        if (keyword == "pan") return number(arguments, -1, 1, track.pan);
        if (keyword == "send") return number(arguments, -60, 12, track.send);
        if (keyword == "human") return number(arguments, 0, 1, track.human);
        if (keyword == "swing") return number(arguments, 50, 75, track.swing);
        if (keyword == "grid") {
            const std::optional<int> grid = arguments.size() == 1 ? gridOf(arguments[0]) : std::nullopt;
            if (!grid) return "a grid is 1/1 to 1/32, with a t for triplets, such as: grid 1/8t";
            track.gridTicks = *grid;
            return {};
        }
        if (keyword == "fx") return readEffect(track, arguments);
        if (keyword == "chop") {
            Parsed<std::vector<Hit>> hits = hitsOf(rest);
            if (const auto* fault = std::get_if<PartFault>(&hits)) return fault->message;
            Chop chop;
            for (const Hit& hit : std::get<std::vector<Hit>>(hits)) {
                chop.open.push_back(hit.velocity > 0.0);
            }
            track.effects.emplace_back(std::move(chop));
            return {};
        }
        return track.drums ? readDrumLine(track, keyword, rest, arguments)
                           : readPitchedLine(track, keyword, rest, arguments);
    }

    std::string readEffect(Track& track, Words arguments) {
        if (arguments.empty()) return "'fx' needs the name of an effect";
        std::optional<Effect> effect = effectNamed(arguments[0]);
        if (!effect || std::holds_alternative<Chop>(*effect)) {
            return "unknown effect " + quoted(arguments[0]) + "; there are " + effectNames();
        }
        std::string fault =
            readSettings(arguments.subspan(1), [&effect](std::string_view name, double value) {
                return setEffect(*effect, name, value);
            });
        track.effects.push_back(std::move(*effect));
        return fault;
    }

    static DrumRow* rowNamed(Track& track, std::string_view name) {
        for (DrumRow& row : track.rows) {
            if (row.name == name) return &row;
        }
        return nullptr;
    }

    std::string readDrumLine(Track& track, std::string_view keyword, std::string_view rest, Words arguments) {
        if (keyword == "tune") {
            if (arguments.empty()) return "'tune' needs the name of a drum";
            DrumRow* row = rowNamed(track, arguments[0]);
            if (row == nullptr) {
                return "'tune' follows the drum's row, and there is no row " + quoted(arguments[0]);
            }
            return readSettings(arguments.subspan(1), [row](std::string_view name, double value) {
                return setDrum(row->drum, name, value);
            });
        }
        const std::optional<Drum> drum = _sounds.drum(track.name, keyword);
        if (!drum) {
            return "unknown word " + quoted(keyword) +
                   "; a drum part has level, pan, send, human, swing, grid, fx, chop, tune, and rows of " +
                   _sounds.drumNames();
        }
        DrumRow* row = rowNamed(track, keyword);
        if (row == nullptr) row = &track.rows.emplace_back(DrumRow{std::string(keyword), *drum, {}});
        return append(row->hits, hitsOf(rest));
    }

    std::string readPitchedLine(Track& track, std::string_view keyword, std::string_view rest,
                                Words arguments) {
        double value = 0.0;
        if (keyword == "octave") {
            std::string fault = number(arguments, 0, 8, value);
            track.octave = static_cast<int>(value);
            return fault;
        }
        if (keyword == "transpose") {
            std::string fault = number(arguments, -36, 36, value);
            track.transpose = static_cast<int>(value);
            return fault;
        }
        if (keyword == "voices") {
            std::string fault = number(arguments, 1, 6, value);
            track.voices = static_cast<int>(value);
            return fault;
        }
        if (keyword == "gate") return number(arguments, 0.05, 4, track.gate);
        if (keyword == "strum") return number(arguments, 0, 0.2, track.strumSeconds);
        if (keyword == "from") {
            constexpr std::array<std::pair<std::string_view, CountFrom>, 4> Kinds{
                {{"key", CountFrom::Key},
                 {"root", CountFrom::Root},
                 {"chord", CountFrom::Chord},
                 {"voicing", CountFrom::Voicing}}};
            return choose(arguments, Kinds, track.countFrom, "'from' is key, root, chord or voicing");
        }
        if (keyword == "voicing") {
            constexpr std::array<std::pair<std::string_view, Voicing>, 4> Kinds{{{"close", Voicing::Close},
                                                                                 {"drop2", Voicing::DropTwo},
                                                                                 {"spread", Voicing::Spread},
                                                                                 {"shell", Voicing::Shell}}};
            return choose(arguments, Kinds, track.voicing, "'voicing' is close, drop2, spread or shell");
        }
        if (keyword == "line" || keyword == "hits") {
            const bool chordal = keyword == "hits";
            if (!track.cells.empty() && track.chordal != chordal) return "a part has either lines or hits";
            track.chordal = chordal;
            return append(track.cells, chordal ? chordCellsOf(rest) : noteCellsOf(rest));
        }
        return "unknown word " + quoted(keyword) +
               "; a pitched part has level, pan, send, human, swing, grid, fx, chop, octave, transpose, "
               "voices, gate, strum, "
               "from, voicing, line and hits";
    }

    // --- pieces

    static std::string number(Words arguments, double least, double greatest, double& into) {
        const std::optional<double> value = arguments.size() == 1 ? numberOf(arguments[0]) : std::nullopt;
        if (!value) return "one number is expected here";
        if (!(*value >= least && *value <= greatest)) {
            return quoted(arguments[0]) + " must lie between " + plainNumber(least) + " and " +
                   plainNumber(greatest);
        }
        into = *value;
        return {};
    }

    template <typename Kinds, typename Kind>
    static std::string choose(Words arguments, const Kinds& kinds, Kind& into, const char* message) {
        for (const auto& [name, kind] : kinds) {
            if (arguments.size() == 1 && arguments[0] == name) {
                into = kind;
                return {};
            }
        }
        return message;
    }

    template <typename Item>
    static std::string append(std::vector<Item>& into, Parsed<std::vector<Item>> parsed) {
        if (const auto* fault = std::get_if<PartFault>(&parsed)) return fault->message;
        for (Item& item : std::get<std::vector<Item>>(parsed)) {
            into.push_back(std::move(item));
        }
        return {};
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
        for (const Track& track : _recipe.tracks) {
            if (track.drums ? track.rows.empty() : track.cells.empty()) {
                return LineFault{track.line, "this part has no notes"};
            }
            if (std::string message = tooLong(track); !message.empty()) {
                return LineFault{track.line, std::move(message)};
            }
            if (std::string message = holdsNothing(track); !message.empty()) {
                return LineFault{track.line, std::move(message)};
            }
            const bool needsChords = !track.drums && (track.chordal || track.countFrom != CountFrom::Key);
            if (needsChords && _recipe.chords.empty()) {
                return LineFault{track.line, "this part follows chords, but the recipe has no 'chords'"};
            }
        }
        return std::move(_recipe);
    }

    /// A hold or slide at the very beginning goes on from the loop's end; anywhere it needs a note to go on
    /// from.
    static std::string holdsNothing(const Track& track) {
        for (std::size_t index = 0; index < track.cells.size(); ++index) {
            const Cell::Kind before = track.cells[(index + track.cells.size() - 1) % track.cells.size()].kind;
            const Cell::Kind here = track.cells[index].kind;
            if (before == Cell::Kind::Rest && (here == Cell::Kind::Hold || here == Cell::Kind::Slide)) {
                return "step " + std::to_string(index + 1) +
                       " of this part holds or slides, but no note sounds before it";
            }
        }
        return {};
    }

    [[nodiscard]] std::string tooLong(const Track& track) const {
        const auto steps =
            static_cast<std::size_t>((_recipe.ticks() + track.gridTicks - 1) / track.gridTicks);
        const auto message = [steps](const std::string& what, std::size_t length) {
            return what + " has " + std::to_string(length) + " steps, but the loop has only " +
                   std::to_string(steps);
        };
        if (track.cells.size() > steps) return message("this part", track.cells.size());
        for (const DrumRow& row : track.rows) {
            if (row.hits.size() > steps) return message("row " + quoted(row.name), row.hits.size());
        }
        return {};
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

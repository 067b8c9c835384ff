// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "TrackParser.hpp"

#include "PartParser.hpp"

#include <array>
#include <utility>

namespace tonewright::loops {

namespace {

template <typename Kinds, typename Kind>
std::string choose(Words arguments, const Kinds& kinds, Kind& into, const char* message) {
    for (const auto& [name, kind] : kinds) {
        if (arguments.size() == 1 && arguments[0] == name) {
            into = kind;
            return {};
        }
    }
    return message;
}

std::string readEffect(Track& track, Words arguments) {
    if (arguments.empty()) return "'fx' needs the name of an effect";
    std::optional<Effect> effect = effectNamed(arguments[0]);
    if (!effect || std::holds_alternative<Chop>(*effect)) {
        return "unknown effect " + quoted(arguments[0]) + "; the effects are " + effectNames();
    }
    std::string fault = readSettings(arguments.subspan(1), [&effect](std::string_view name, double value) {
        return setEffect(*effect, name, value);
    });
    track.effects.push_back(std::move(*effect));
    return fault;
}

DrumRow* rowNamed(Track& track, std::string_view name) {
    for (DrumRow& row : track.rows) {
        if (row.name == name) return &row;
    }
    return nullptr;
}

std::string readDrumLine(Track& track, const SoundLibrary& sounds, std::string_view keyword,
                         std::string_view rest, Words arguments) {
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
    const std::optional<Drum> drum = sounds.drum(track.name, keyword);
    if (!drum) {
        return "unknown word " + quoted(keyword) +
               "; a drum part has level, pan, send, human, swing, grid, fx, chop, tune, and rows of " +
               sounds.drumNames();
    }
    DrumRow* row = rowNamed(track, keyword);
    if (row == nullptr) row = &track.rows.emplace_back(DrumRow{std::string(keyword), *drum, {}});
    return appendTo(row->hits, hitsOf(rest));
}

std::string readPitchedLine(Track& track, std::string_view keyword, std::string_view rest, Words arguments) {
    double value = 0.0;
    if (keyword == "octave") {
        std::string fault = readNumber(arguments, 0, 8, value);
        track.octave = static_cast<int>(value);
        return fault;
    }
    if (keyword == "transpose") {
        std::string fault = readNumber(arguments, -36, 36, value);
        track.transpose = static_cast<int>(value);
        return fault;
    }
    if (keyword == "voices") {
        std::string fault = readNumber(arguments, 1, 6, value);
        track.voices = static_cast<int>(value);
        return fault;
    }
    if (keyword == "gate") return readNumber(arguments, 0.05, 4, track.gate);
    if (keyword == "strum") return readNumber(arguments, 0, 0.2, track.strumSeconds);
    if (keyword == "from") {
        constexpr std::array<std::pair<std::string_view, CountFrom>, 4> Kinds{
            {{"key", CountFrom::Key},
             {"root", CountFrom::Root},
             {"chord", CountFrom::Chord},
             {"voicing", CountFrom::Voicing}}};
        return choose(arguments, Kinds, track.countFrom, "'from' must be key, root, chord or voicing");
    }
    if (keyword == "voicing") {
        constexpr std::array<std::pair<std::string_view, Voicing>, 4> Kinds{{{"close", Voicing::Close},
                                                                             {"drop2", Voicing::DropTwo},
                                                                             {"spread", Voicing::Spread},
                                                                             {"shell", Voicing::Shell}}};
        return choose(arguments, Kinds, track.voicing, "'voicing' must be close, drop2, spread or shell");
    }
    if (keyword == "line" || keyword == "hits") {
        const bool chordal = keyword == "hits";
        if (!track.cells.empty() && track.chordal != chordal) return "a part has either lines or hits";
        track.chordal = chordal;
        return appendTo(track.cells, chordal ? chordCellsOf(rest) : noteCellsOf(rest));
    }
    return "unknown word " + quoted(keyword) +
           "; a pitched part has level, pan, send, human, swing, grid, fx, chop, octave, transpose, "
           "voices, gate, strum, "
           "from, voicing, line and hits";
}

// Checks that every hold and slide follows a note or another hold. The step before the first is the last step
// of the loop.
std::string holdsNothing(const Track& track) {
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

std::string tooLong(const Recipe& recipe, const Track& track) {
    const auto steps = static_cast<std::size_t>((recipe.ticks() + track.gridTicks - 1) / track.gridTicks);
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

} // namespace

std::string beginTrack(Recipe& recipe, const SoundLibrary& sounds, std::size_t line, bool drums,
                       Words arguments) {
    if (arguments.empty()) {
        return drums ? "'drums' needs the name of a kit" : "'play' needs the name of an instrument";
    }
    Track track;
    track.line = line;
    track.drums = drums;
    track.name = arguments[0];
    if (drums) {
        if (!sounds.hasKit(track.name)) {
            return "unknown kit " + quoted(track.name) + "; the kits are " + sounds.kitNames();
        }
        if (arguments.size() > 1) return "nothing follows the name of a kit";
    } else {
        std::optional<Patch> patch = sounds.instrument(track.name);
        if (!patch) {
            return "unknown instrument " + quoted(track.name) + "; the instruments are " +
                   sounds.instrumentNames();
        }
        track.patch = *patch;
        std::string fault = readSettings(arguments.subspan(1), [&track](std::string_view name, double value) {
            return setPatch(track.patch, name, value);
        });
        if (!fault.empty()) return fault;
    }
    recipe.tracks.push_back(std::move(track));
    return {};
}

std::string readTrackLine(Track& track, const SoundLibrary& sounds, std::string_view keyword,
                          std::string_view rest, Words arguments) {
    if (keyword == "level") return readNumber(arguments, -40, 20, track.level);
    if (keyword == "pan") return readNumber(arguments, -1, 1, track.pan);
    if (keyword == "send") return readNumber(arguments, -60, 12, track.send);
    if (keyword == "human") return readNumber(arguments, 0, 1, track.human);
    if (keyword == "swing") return readNumber(arguments, 50, 75, track.swing);
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
    return track.drums ? readDrumLine(track, sounds, keyword, rest, arguments)
                       : readPitchedLine(track, keyword, rest, arguments);
}

std::optional<LineFault> faultOfTracks(const Recipe& recipe) {
    for (const Track& track : recipe.tracks) {
        if (track.drums ? track.rows.empty() : track.cells.empty()) {
            return LineFault{track.line, "this part has no notes"};
        }
        if (std::string message = tooLong(recipe, track); !message.empty()) {
            return LineFault{track.line, std::move(message)};
        }
        if (std::string message = holdsNothing(track); !message.empty()) {
            return LineFault{track.line, std::move(message)};
        }
        const bool needsChords = !track.drums && (track.chordal || track.countFrom != CountFrom::Key);
        if (needsChords && recipe.chords.empty()) {
            return LineFault{track.line, "this part follows chords, but the recipe has no 'chords'"};
        }
    }
    return std::nullopt;
}

} // namespace tonewright::loops

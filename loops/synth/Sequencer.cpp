// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Sequencer.hpp"

#include "Random.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::loops {

namespace {

/// Converts ticks to frames, including swing.
class Clock {
  public:
    Clock(const Recipe& recipe, const Track& track)
        : _framesPerTick(static_cast<double>(recipe.frames()) / static_cast<double>(recipe.ticks()))
        , _frames(recipe.frames())
        , _pair(2.0 * static_cast<double>(recipe.swingTicks))
        , _share((track.swing >= 0.0 ? track.swing : recipe.swing) * 0.01) {}

    [[nodiscard]] double position(double tick) const {
        const double pairs = std::floor(tick / _pair);
        const double part = tick / _pair - pairs;
        const double swung = part < 0.5 ? 2.0 * part * _share : _share + (2.0 * part - 1.0) * (1.0 - _share);
        return (pairs + swung) * _pair * _framesPerTick;
    }

    /// Rounds a position, which may lie a little before the loop's beginning, and wraps it to a frame of the
    /// loop.
    [[nodiscard]] std::size_t wrapped(double position) const {
        const auto length = static_cast<std::int64_t>(_frames);
        const auto frame = static_cast<std::int64_t>(std::floor(position + 0.5));
        return static_cast<std::size_t>(((frame % length) + length) % length);
    }

  private:
    double _framesPerTick;
    std::size_t _frames;
    double _pair;
    double _share;
};

const Chord& chordAt(const Recipe& recipe, int tick) {
    static const Chord none;
    for (const ChordSpan& span : recipe.chords) {
        if (tick < span.endTick) return span.chord;
    }
    return recipe.chords.empty() ? none : recipe.chords.back().chord;
}

/// Returns the voicing of every chord of the progression.
std::vector<std::vector<int>> layOut(const Recipe& recipe, const Track& track) {
    std::vector<std::vector<int>> layouts;
    const double centre = 12.0 * (track.octave + 1) + 6.0;
    std::vector<int> before;
    for (const ChordSpan& span : recipe.chords) {
        before = voiced(span.chord, track.voicing, track.voices, centre, before);
        layouts.push_back(before);
    }
    if (layouts.empty()) layouts.push_back(voiced(Chord{}, track.voicing, track.voices, centre, {}));
    return layouts;
}

std::size_t chordIndexAt(const Recipe& recipe, int tick) {
    for (std::size_t index = 0; index < recipe.chords.size(); ++index) {
        if (tick < recipe.chords[index].endTick) return index;
    }
    return recipe.chords.empty() ? 0 : recipe.chords.size() - 1;
}

std::vector<int> pitchesOf(const Recipe& recipe, const Track& track, const Cell& cell, int tick,
                           const std::vector<std::vector<int>>& layouts) {
    const std::vector<int>& layout = layouts[chordIndexAt(recipe, tick)];
    std::vector<int> pitches;
    if (track.chordal) {
        pitches = layout;
    } else {
        const Chord& chord = chordAt(recipe, tick);
        std::vector<int> rising;
        for (const int tone : chord.tones) {
            rising.push_back(12 * (track.octave + 1) + chord.root + tone);
        }
        for (const Cell::Degree& degree : cell.degrees) {
            int pitch = 0;
            switch (track.countFrom) {
            case CountFrom::Key:
                pitch = noteOfKey(recipe.key, degree.number, track.octave);
                break;
            case CountFrom::Root:
                pitch = noteOfRoot(recipe.key, chord, degree.number, track.octave);
                break;
            case CountFrom::Chord:
                pitch = noteOfChord(rising, degree.number);
                break;
            case CountFrom::Voicing:
                pitch = noteOfChord(layout, degree.number);
                break;
            }
            pitches.push_back(pitch + degree.alteration);
        }
    }
    for (int& pitch : pitches) {
        pitch = std::clamp(pitch + track.transpose, 21, 120);
    }
    return pitches;
}

/// A player's random deviation in force and time.
struct Unevenness {
    double force = 1.0;
    double seconds = 0.0;
};

Unevenness uneven(Random& random, double human) {
    const double force = 1.0 + human * 0.16 * random.signedUnit();
    return {force, human * 0.009 * random.signedUnit()};
}

double limited(double velocity) {
    return std::clamp(velocity, 0.05, 1.0);
}

} // namespace

std::vector<TimedNote> notesOf(const Recipe& recipe, const Track& track) {
    std::vector<TimedNote> notes;
    if (track.cells.empty()) return notes;
    const Clock clock(recipe, track);
    const std::vector<std::vector<int>> layouts = layOut(recipe, track);
    const int steps = (recipe.ticks() + track.gridTicks - 1) / track.gridTicks;
    const auto cellAt = [&](int step) -> const Cell& {
        return track.cells[static_cast<std::size_t>(step % steps) % track.cells.size()];
    };
    const double rate = recipe.rate;
    Random random(seedFrom(track.name, recipe.seed * 7919U + track.line));
    for (int step = 0; step < steps; ++step) {
        const Cell& cell = cellAt(step);
        if (cell.kind != Cell::Kind::Notes) continue;
        const int tick = step * track.gridTicks;
        // Holds and slides that follow belong to this note, even across the loop's end.
        int length = 1;
        std::vector<int> slides;
        while (length < steps) {
            const Cell::Kind next = cellAt(step + length).kind;
            if (next != Cell::Kind::Hold && next != Cell::Kind::Slide) break;
            if (next == Cell::Kind::Slide) slides.push_back(length);
            ++length;
        }
        const Unevenness unevenness = uneven(random, track.human);
        const double start = clock.position(tick) + unevenness.seconds * rate;
        const double written = clock.position(tick + length * track.gridTicks) - clock.position(tick);
        const double share = cell.staccato ? 0.45 : track.gate;
        const std::vector<int> pitches = pitchesOf(recipe, track, cell, tick, layouts);
        for (std::size_t index = 0; index < pitches.size(); ++index) {
            TimedNote timed;
            const double late = track.strumSeconds * static_cast<double>(index) * rate;
            timed.frame = clock.wrapped(start + late);
            timed.note.note = pitches[index];
            timed.note.velocity = limited(cell.velocity * unevenness.force);
            timed.note.gateFrames = static_cast<std::size_t>(std::max(written * share, 64.0));
            timed.note.seed = random.bits();
            for (const int slide : slides) {
                const int slideTick = tick + slide * track.gridTicks;
                const std::vector<int> reached =
                    pitchesOf(recipe, track, cellAt(step + slide), slideTick % recipe.ticks(), layouts);
                if (reached.empty()) continue;
                const auto frame = static_cast<std::size_t>(clock.position(slideTick) - clock.position(tick));
                timed.note.slides.push_back(
                    {frame, static_cast<double>(reached[std::min(index, reached.size() - 1)])});
            }
            notes.push_back(std::move(timed));
        }
    }
    return notes;
}

std::vector<TimedStroke> strokesOf(const Recipe& recipe, const Track& track, const DrumRow& row) {
    std::vector<TimedStroke> strokes;
    if (row.hits.empty()) return strokes;
    const Clock clock(recipe, track);
    const int steps = (recipe.ticks() + track.gridTicks - 1) / track.gridTicks;
    Random random(seedFrom(row.name, recipe.seed * 7919U + track.line));
    for (int step = 0; step < steps; ++step) {
        const Hit& hit = row.hits[static_cast<std::size_t>(step) % row.hits.size()];
        if (hit.velocity <= 0.0) continue;
        for (int stroke = 0; stroke < hit.strokes; ++stroke) {
            const double tick =
                (static_cast<double>(step) + static_cast<double>(stroke) / hit.strokes) * track.gridTicks;
            if (tick >= recipe.ticks()) continue;
            const Unevenness unevenness = uneven(random, track.human);
            // The strokes of a roll grow louder.
            const double swell = 0.7 + 0.3 * static_cast<double>(stroke + 1) / hit.strokes;
            TimedStroke timed;
            timed.frame = clock.wrapped(clock.position(tick) + 0.6 * unevenness.seconds * recipe.rate);
            timed.stroke.velocity = limited(hit.velocity * unevenness.force * swell);
            timed.stroke.seed = random.bits();
            strokes.push_back(timed);
        }
    }
    return strokes;
}

} // namespace tonewright::loops

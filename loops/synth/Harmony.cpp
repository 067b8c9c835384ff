// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Harmony.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tonewright::loops {

namespace {

using Named = std::pair<std::string_view, std::vector<int>>;

const std::vector<Named>& scales() {
    static const std::vector<Named> table{
        {"major", {0, 2, 4, 5, 7, 9, 11}},
        {"minor", {0, 2, 3, 5, 7, 8, 10}},
        {"dorian", {0, 2, 3, 5, 7, 9, 10}},
        {"phrygian", {0, 1, 3, 5, 7, 8, 10}},
        {"lydian", {0, 2, 4, 6, 7, 9, 11}},
        {"mixolydian", {0, 2, 4, 5, 7, 9, 10}},
        {"locrian", {0, 1, 3, 5, 6, 8, 10}},
        {"harmonic-minor", {0, 2, 3, 5, 7, 8, 11}},
        {"melodic-minor", {0, 2, 3, 5, 7, 9, 11}},
        {"phrygian-dominant", {0, 1, 4, 5, 7, 8, 10}},
        {"double-harmonic", {0, 1, 4, 5, 7, 8, 11}},
        {"lydian-dominant", {0, 2, 4, 6, 7, 9, 10}},
        {"whole-tone", {0, 2, 4, 6, 8, 10}},
        {"pentatonic", {0, 2, 4, 7, 9}},
        {"minor-pentatonic", {0, 3, 5, 7, 10}},
        {"blues", {0, 3, 5, 6, 7, 10}},
        {"hirajoshi", {0, 2, 3, 7, 8}},
    };
    return table;
}

const std::vector<Named>& qualities() {
    static const std::vector<Named> table{
        {"", {0, 4, 7}},
        {"m", {0, 3, 7}},
        {"5", {0, 7}},
        {"6", {0, 4, 7, 9}},
        {"m6", {0, 3, 7, 9}},
        {"69", {0, 4, 7, 9, 14}},
        {"maj7", {0, 4, 7, 11}},
        {"7", {0, 4, 7, 10}},
        {"m7", {0, 3, 7, 10}},
        {"mmaj7", {0, 3, 7, 11}},
        {"maj9", {0, 4, 7, 11, 14}},
        {"9", {0, 4, 7, 10, 14}},
        {"m9", {0, 3, 7, 10, 14}},
        {"add9", {0, 4, 7, 14}},
        {"madd9", {0, 3, 7, 14}},
        {"m11", {0, 3, 7, 10, 14, 17}},
        {"11", {0, 7, 10, 14, 17}},
        {"13", {0, 4, 10, 14, 21}},
        {"maj13", {0, 4, 11, 14, 21}},
        {"7b9", {0, 4, 7, 10, 13}},
        {"7#9", {0, 4, 7, 10, 15}},
        {"7#5", {0, 4, 8, 10}},
        {"7sus4", {0, 5, 7, 10}},
        {"9sus4", {0, 5, 7, 10, 14}},
        {"sus2", {0, 2, 7}},
        {"sus4", {0, 5, 7}},
        {"dim", {0, 3, 6}},
        {"dim7", {0, 3, 6, 9}},
        {"m7b5", {0, 3, 6, 10}},
        {"aug", {0, 4, 8}},
        {"maj7#11", {0, 4, 7, 11, 18}},
        {"maj7#5", {0, 4, 8, 11}},
    };
    return table;
}

int floorDivided(int value, int divisor) {
    return value >= 0 ? value / divisor : -((-value + divisor - 1) / divisor);
}

int within12(int value) {
    return ((value % 12) + 12) % 12;
}

} // namespace

std::optional<int> readPitchClass(std::string_view& text) {
    constexpr std::array<int, 7> Letters{9, 11, 0, 2, 4, 5, 7}; // from A
    if (text.empty() || text.front() < 'A' || text.front() > 'G') return std::nullopt;
    int pitch = Letters[static_cast<std::size_t>(text.front() - 'A')];
    text.remove_prefix(1);
    while (!text.empty() && (text.front() == '#' || text.front() == 'b')) {
        pitch += text.front() == '#' ? 1 : -1;
        text.remove_prefix(1);
    }
    return within12(pitch);
}

std::optional<std::vector<int>> scaleNamed(std::string_view name) {
    for (const Named& scale : scales()) {
        if (scale.first == name) return scale.second;
    }
    return std::nullopt;
}

std::optional<Chord> chordNamed(std::string_view symbol) {
    const std::optional<int> root = readPitchClass(symbol);
    if (!root) return std::nullopt;
    Chord chord{.root = *root, .tones = {}, .bass = *root};
    if (const std::size_t slash = symbol.find('/'); slash != std::string_view::npos) {
        std::string_view bass = symbol.substr(slash + 1);
        const std::optional<int> pitch = readPitchClass(bass);
        if (!pitch || !bass.empty()) return std::nullopt;
        chord.bass = *pitch;
        symbol = symbol.substr(0, slash);
    }
    for (const Named& quality : qualities()) {
        if (quality.first == symbol) {
            chord.tones = quality.second;
            return chord;
        }
    }
    return std::nullopt;
}

int noteOfKey(const Key& key, int degree, int octave) {
    const int size = static_cast<int>(key.scale.size());
    const int octaves = floorDivided(degree - 1, size);
    const int step = degree - 1 - octaves * size;
    return 12 * (octave + 1 + octaves) + key.root + key.scale[static_cast<std::size_t>(step)];
}

int noteOfRoot(const Key& key, const Chord& chord, int degree, int octave) {
    constexpr std::array<int, 7> Plain{0, 2, 4, 5, 7, 9, 10};
    const int octaves = floorDivided(degree - 1, 7);
    const int step = degree - 1 - octaves * 7;
    int interval = Plain[static_cast<std::size_t>(step)];
    // Prefers the tone of the key that is this degree above the chord's root.
    for (const int tone : key.scale) {
        const int above = within12(tone + key.root - chord.root);
        constexpr std::array<int, 7> Low{0, 1, 3, 5, 6, 8, 10};
        constexpr std::array<int, 7> High{0, 2, 4, 6, 8, 9, 11};
        if (above >= Low[static_cast<std::size_t>(step)] && above <= High[static_cast<std::size_t>(step)] &&
            (step != 4 || above != 6) && (step != 3 || above != 6)) {
            interval = above;
            break;
        }
    }
    if (step % 2 == 0 && step > 0) { // the chord's third, fifth and seventh
        const std::array<std::pair<int, int>, 3> ranges{{{3, 5}, {6, 8}, {9, 11}}};
        const auto [low, high] = ranges[static_cast<std::size_t>(step / 2 - 1)];
        for (const int tone : chord.tones) {
            if (tone >= low && tone <= high) {
                interval = tone;
                break;
            }
        }
    }
    const int base = step == 0 ? chord.bass : chord.root;
    return 12 * (octave + 1 + octaves) + base + interval;
}

int noteOfChord(const std::vector<int>& rising, int index) {
    const int size = static_cast<int>(rising.size());
    const int octaves = floorDivided(index - 1, size);
    return rising[static_cast<std::size_t>(index - 1 - octaves * size)] + 12 * octaves;
}

std::vector<int> voiced(const Chord& chord, Voicing voicing, int voices, double centre,
                        const std::vector<int>& before) {
    std::vector<int> tones = chord.tones;
    const auto drop = [&tones](int tone) {
        const auto found = std::find(tones.begin(), tones.end(), tone);
        if (found != tones.end()) tones.erase(found);
    };
    if (voicing == Voicing::Shell) {
        drop(7);
        voices = std::min(voices, 3);
    }
    const auto most = static_cast<std::size_t>(std::max(voices, 1));
    if (tones.size() > most) drop(7);
    if (tones.size() > most) drop(0);
    if (tones.size() > most) tones.resize(most);

    std::vector<int> classes;
    classes.reserve(tones.size());
    for (const int tone : tones) {
        classes.push_back(within12(chord.root + tone));
    }
    std::sort(classes.begin(), classes.end());
    classes.erase(std::unique(classes.begin(), classes.end()), classes.end());

    std::vector<int> best;
    double bestCost = 1e9;
    const std::size_t size = classes.size();
    for (std::size_t inversion = 0; inversion < size; ++inversion) {
        for (int octave = 1; octave <= 7; ++octave) {
            std::vector<int> notes;
            for (std::size_t index = 0; index < size; ++index) {
                const std::size_t place = (inversion + index) % size;
                notes.push_back(12 * (octave + 1) + classes[place] + (inversion + index >= size ? 12 : 0));
            }
            if (voicing == Voicing::DropTwo && size >= 3) notes[size - 2] -= 12;
            if (voicing == Voicing::Spread && size >= 3) {
                notes[size - 2] -= 12;
                if (size >= 4) notes[size - 4] -= 12;
            }
            std::sort(notes.begin(), notes.end());
            double mean = 0.0;
            for (const int note : notes) {
                mean += static_cast<double>(note) / static_cast<double>(size);
            }
            double cost = std::fabs(mean - centre) * 1.5;
            for (std::size_t index = 0; index < std::min(size, before.size()); ++index) {
                cost += std::fabs(static_cast<double>(notes[index] - before[index])) * 0.8;
            }
            // A semitone at the bottom of a chord sounds muddy.
            if (size >= 2 && notes[1] - notes[0] == 1) cost += 5.0;
            if (cost < bestCost) {
                bestCost = cost;
                best = notes;
            }
        }
    }
    return best;
}

} // namespace tonewright::loops

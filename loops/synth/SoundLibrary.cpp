// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SoundLibrary.hpp"

#include <algorithm>
#include <array>

namespace tonewright::loops {

namespace {

const auto* findNamed(const auto& sounds, std::string_view name) {
    const auto found =
        std::ranges::find(sounds, name, [](const auto& sound) -> const std::string& { return sound.first; });
    return found == sounds.end() ? nullptr : &found->second;
}

std::string namesOf(const auto& sounds) {
    std::string names;
    for (const auto& sound : sounds) {
        names += (names.empty() ? "" : ", ") + sound.first;
    }
    return names;
}

/// Returns the sound of a kind with its default parameters, or no value.
template <typename Sound, typename Kinds>
std::optional<Sound> plainSound(const Kinds& kinds, std::string_view name) {
    const auto found = std::ranges::find(kinds, name, [](const auto& kind) { return kind.first; });
    if (found == kinds.end()) return std::nullopt;
    return found->second;
}

std::optional<Patch> plainPatch(std::string_view kind) {
    static const std::array<std::pair<std::string_view, Patch>, 6> kinds{{{"subtractive", SubtractivePatch{}},
                                                                          {"fm", FmPatch{}},
                                                                          {"pluck", PluckPatch{}},
                                                                          {"modal", ModalPatch{}},
                                                                          {"organ", OrganPatch{}},
                                                                          {"air", AirPatch{}}}};
    return plainSound<Patch>(kinds, kind);
}

std::optional<DrumPatch> plainDrum(std::string_view kind) {
    static const std::array<std::pair<std::string_view, DrumPatch>, 6> kinds{{{"membrane", MembranePatch{}},
                                                                              {"snare", SnarePatch{}},
                                                                              {"clap", ClapPatch{}},
                                                                              {"metal", MetalPatch{}},
                                                                              {"shaker", ShakerPatch{}},
                                                                              {"wood", WoodPatch{}}}};
    return plainSound<DrumPatch>(kinds, kind);
}

} // namespace

std::optional<LineFault> SoundLibrary::read(std::string_view text) {
    bool inKit = false; // whether this file has begun a kit
    return readLines(text, [&](const TextLine& line) -> std::string {
        const Words arguments = line.arguments();
        if (line.keyword() == "instrument") return addInstrument(arguments);
        if (line.keyword() == "kit") {
            if (arguments.size() != 1) return "'kit' needs one name";
            if (hasKit(arguments[0])) return "there is a kit " + quoted(arguments[0]) + " already";
            _kits.emplace_back(std::string(arguments[0]), Named<Drum>{});
            inKit = true;
            return {};
        }
        if (!inKit) return "unknown word " + quoted(line.keyword()) + "; expected instrument or kit";
        return addDrum(line.keyword(), arguments);
    });
}

std::string SoundLibrary::addInstrument(Words arguments) {
    if (arguments.size() < 2) return "'instrument' needs a name and a kind";
    if (instrument(arguments[0])) return "there is an instrument " + quoted(arguments[0]) + " already";
    std::optional<Patch> patch = plainPatch(arguments[1]);
    if (!patch) {
        return "unknown kind " + quoted(arguments[1]) +
               "; the kinds are subtractive, fm, pluck, modal, organ and air";
    }
    std::string fault = readSettings(arguments.subspan(2), [&patch](std::string_view name, double value) {
        return setPatch(*patch, name, value);
    });
    if (fault.empty()) _instruments.emplace_back(std::string(arguments[0]), *patch);
    return fault;
}

std::string SoundLibrary::addDrum(std::string_view name, Words arguments) {
    Named<Drum>& drums = _kits.back().second;
    if (arguments.empty()) return "a drum needs a kind";
    if (findNamed(drums, name) != nullptr) return "this kit has a drum " + quoted(name) + " already";
    if (_kits.size() > 1 && findNamed(_kits.front().second, name) == nullptr) {
        return "the first kit has no drum " + quoted(name) + ", so no other kit can replace it";
    }
    const std::optional<DrumPatch> patch = plainDrum(arguments[0]);
    if (!patch) {
        return "unknown kind " + quoted(arguments[0]) +
               "; the kinds are membrane, snare, clap, metal, shaker and wood";
    }
    Drum drum{.patch = *patch};
    std::string fault = readSettings(arguments.subspan(1), [&drum](std::string_view setting, double value) {
        return setDrum(drum, setting, value);
    });
    if (fault.empty()) drums.emplace_back(std::string(name), drum);
    return fault;
}

std::optional<Patch> SoundLibrary::instrument(std::string_view name) const {
    const Patch* patch = findNamed(_instruments, name);
    return patch == nullptr ? std::nullopt : std::optional(*patch);
}

bool SoundLibrary::hasKit(std::string_view kit) const {
    return findNamed(_kits, kit) != nullptr;
}

std::optional<Drum> SoundLibrary::drum(std::string_view kit, std::string_view drum) const {
    const Named<Drum>* own = findNamed(_kits, kit);
    const Drum* found = own == nullptr ? nullptr : findNamed(*own, drum);
    if (found == nullptr && !_kits.empty()) found = findNamed(_kits.front().second, drum);
    return found == nullptr ? std::nullopt : std::optional(*found);
}

std::string SoundLibrary::instrumentNames() const {
    return namesOf(_instruments);
}

std::string SoundLibrary::kitNames() const {
    return namesOf(_kits);
}

std::string SoundLibrary::drumNames() const {
    return _kits.empty() ? std::string() : namesOf(_kits.front().second);
}

} // namespace tonewright::loops

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tonewright-loops: renders recipes and writes loops. Run by the build; see `help` below.

#include "loops/encode/LoopEncoder.hpp"
#include "loops/program/WavFile.hpp"
#include "loops/synth/RecipeParser.hpp"
#include "loops/synth/Render.hpp"

#include <atomic>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace tonewright::loops;
namespace fs = std::filesystem;

constexpr std::string_view Help = R"(tonewright-loops - plays recipes and writes loops

  tonewright-loops RECIPE... --out FOLDER    write FOLDER/NAME.m4a for every NAME.loop
  tonewright-loops --wav RECIPE FILE         write the exact samples as a wav file of floats
  tonewright-loops --check RECIPE...         read the recipes and print what they contain
  tonewright-loops --help                    show this text and exit

  --sounds FOLDER    the folder of instruments.sounds and kits.sounds; default: the folder of the first recipe

Recipes are text; loops/README.md describes them. If all goes well, nothing is printed, except by --check.
The exit status is 0, 1 for an error in a recipe or file, 2 for a wrong command line.
)";

/// Reports one sentence on standard error; sentences of several threads do not mix.
void complain(const std::string& sentence) {
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    std::fprintf(stderr, "tonewright-loops: %s.\n", sentence.c_str());
}

std::optional<std::string> contentOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in) {
        complain("the file '" + file.string() + "' cannot be read");
        return std::nullopt;
    }
    return text;
}

void complain(const fs::path& file, const LineFault& fault) {
    complain(file.string() + (fault.line == 0 ? "" : ":" + std::to_string(fault.line)) + ": " +
             fault.message);
}

/// Reads the instruments and kits in `folder`.
std::optional<SoundLibrary> readSounds(const fs::path& folder) {
    SoundLibrary sounds;
    for (const char* name : {"instruments.sounds", "kits.sounds"}) {
        const fs::path file = folder / name;
        const std::optional<std::string> text = contentOf(file);
        if (!text) return std::nullopt;
        if (const auto fault = sounds.read(*text)) {
            complain(file, *fault);
            return std::nullopt;
        }
    }
    return sounds;
}

std::optional<Recipe> readRecipe(const fs::path& file, const SoundLibrary& sounds) {
    const std::optional<std::string> text = contentOf(file);
    if (!text) return std::nullopt;
    std::variant<Recipe, LineFault> read = parseRecipe(*text, sounds);
    if (const auto* fault = std::get_if<LineFault>(&read)) {
        complain(file, *fault);
        return std::nullopt;
    }
    return std::get<Recipe>(std::move(read));
}

/// Writes a temporary file and renames it, so that an interrupted build leaves no incomplete loop.
bool makeLoop(const fs::path& recipeFile, const SoundLibrary& sounds, const fs::path& folder) {
    const std::optional<Recipe> recipe = readRecipe(recipeFile, sounds);
    if (!recipe) return false;
    const fs::path target = folder / (recipeFile.stem().string() + ".m4a");
    const fs::path unfinished = target.string() + ".part";
    std::error_code error;
    if (const auto fault = encodeLoop(render(*recipe), recipe->title, unfinished)) {
        complain("'" + target.string() + "' was not made: " + *fault);
        fs::remove(unfinished, error);
        return false;
    }
    fs::rename(unfinished, target, error);
    if (error) complain("'" + target.string() + "' was not made: " + error.message());
    return !error;
}

int makeLoops(const std::vector<fs::path>& recipes, const SoundLibrary& sounds, const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    std::atomic<std::size_t> next = 0; // shared by the workers: the next recipe's index
    std::atomic<bool> allMade = true;
    const auto work = [&] {
        for (std::size_t index = next++; index < recipes.size(); index = next++) {
            if (!makeLoop(recipes[index], sounds, folder)) allMade = false;
        }
    };
    {
        const std::jthread helper(work);
        work();
    }
    return allMade ? 0 : 1;
}

int writeSamples(const fs::path& recipeFile, const SoundLibrary& sounds, const fs::path& file) {
    const std::optional<Recipe> recipe = readRecipe(recipeFile, sounds);
    if (!recipe) return 1;
    if (const auto fault = writeWav(render(*recipe), file)) {
        complain("'" + file.string() + "': " + *fault);
        return 1;
    }
    return 0;
}

int check(const std::vector<fs::path>& recipes, const SoundLibrary& sounds) {
    bool sound = true;
    for (const fs::path& file : recipes) {
        const std::optional<Recipe> recipe = readRecipe(file, sounds);
        sound = sound && recipe;
        if (!recipe) continue;
        std::printf("%s: %s, %d/%d, %d bars, %.3f s at %d Hz, %d channel(s), %zu parts\n",
                    file.filename().c_str(), recipe->title.c_str(), recipe->beats, recipe->unit, recipe->bars,
                    static_cast<double>(recipe->frames()) / recipe->rate, recipe->rate, recipe->channels,
                    recipe->tracks.size());
    }
    return sound ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    quietEncoder();
    const std::vector<std::string_view> words(arguments + 1, arguments + count);
    std::vector<fs::path> files;
    fs::path folder;
    fs::path soundFolder;
    bool wav = false;
    bool checking = false;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string_view word = words[index];
        if (word == "--help") {
            std::fputs(Help.data(), stdout);
            return 0;
        }
        if (word == "--out" && index + 1 < words.size()) {
            folder = words[++index];
        } else if (word == "--sounds" && index + 1 < words.size()) {
            soundFolder = words[++index];
        } else if (word == "--wav") {
            wav = true;
        } else if (word == "--check") {
            checking = true;
        } else if (word.starts_with("-")) {
            complain("unknown option '" + std::string(word) + "'; see --help");
            return 2;
        } else {
            files.emplace_back(word);
        }
    }
    const bool writing = wav && files.size() == 2;
    const bool making = !wav && !checking && !files.empty() && !folder.empty();
    if (!writing && !making && !(checking && !files.empty())) {
        complain("these arguments do not fit together; see --help");
        return 2;
    }
    const auto sounds = readSounds(soundFolder.empty() ? files[0].parent_path() : soundFolder);
    if (!sounds) return 1;
    if (writing) return writeSamples(files[0], *sounds, files[1]);
    return making ? makeLoops(files, *sounds, folder) : check(files, *sounds);
}

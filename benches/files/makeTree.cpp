// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates a tree to scan. The seed is fixed, so every machine gets the same names, sizes and dates.
//   bench_make_tree DIRECTORY wide|deep|mixed ITEMS
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// SplitMix64: short, and independent of the standard library's implementation.
class Random {
  public:
    std::uint64_t next() {
        std::uint64_t z = (_state += 0x9E3779B97F4A7C15U);
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }

  private:
    std::uint64_t _state = 20261124;
};

constexpr std::string_view Words[] = {"kick", "snare", "hat",     "Loop",    "vocal", "take", "bass",
                                      "Pad",  "clap",  "reverse", "fill",    "room",  "tape", "dusty",
                                      "warm", "Sub",   "lead",    "texture", "synth", "drum"};
constexpr std::string_view Extensions[] = {".wav", ".aif", ".m4a", ".mid", ".txt", ".flac", ".png", ".asd"};

// Returns a name of one to three words, a number and an extension.
std::string fileName(Random& random, std::uint64_t number) {
    std::string name(Words[random.below(std::size(Words))]);
    for (std::uint64_t words = random.below(3); words > 0; --words) {
        name.append(random.below(2) == 0 ? " " : "_").append(Words[random.below(std::size(Words))]);
    }
    return name.append("-")
        .append(std::to_string(number))
        .append(Extensions[random.below(std::size(Extensions))]);
}

[[noreturn]] void fail(const std::string& what) {
    std::perror(what.c_str());
    std::exit(1);
}

void makeFile(const std::string& path, Random& random) {
    const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
    if (file < 0) fail(path);
    const std::uint64_t magnitude = random.below(27);
    const off_t size = static_cast<off_t>(random.below(std::uint64_t{1} << magnitude));
    const timespec date{static_cast<time_t>(1'000'000'000 + random.below(800'000'000)), 0};
    const timespec dates[2] = {date, date};
    if (::ftruncate(file, size) != 0 || ::futimens(file, dates) != 0) fail(path);
    ::close(file);
}

void makeFolder(const std::string& path) {
    if (::mkdir(path.c_str(), 0755) != 0) fail(path);
}

void makeWide(const std::string& root, std::uint64_t items, Random& random) {
    for (std::uint64_t i = 0; i < items; ++i) makeFile(root + "/" + fileName(random, i), random);
}

void makeDeep(const std::string& root, std::uint64_t items, Random& random) {
    constexpr std::uint64_t Levels = 100;
    std::string folder = root;
    for (std::uint64_t level = 0, made = 0; level < Levels; ++level) {
        for (std::uint64_t i = 1; i < items / Levels; ++i) {
            makeFile(folder + "/" + fileName(random, ++made), random);
        }
        folder += "/level " + std::to_string(level);
        makeFolder(folder);
    }
}

// Fills folders breadth first with 2 to 30 items each; on average every ninth item is a folder.
void makeMixed(const std::string& root, std::uint64_t items, Random& random) {
    std::deque<std::string> folders{root};
    std::uint64_t made = 0;
    while (made < items) {
        const std::string folder = folders.front();
        folders.pop_front();
        for (std::uint64_t count = 2 + random.below(29); count > 0 && made < items; --count) {
            ++made;
            if (folders.empty() || random.below(9) == 0) {
                folders.push_back(folder + "/" + std::string(Words[random.below(std::size(Words))]) + " " +
                                  std::to_string(made));
                makeFolder(folders.back());
            } else {
                makeFile(folder + "/" + fileName(random, made), random);
            }
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) return 2;
    const std::string root = argv[1];
    const std::string_view kind = argv[2];
    const std::uint64_t items = std::strtoull(argv[3], nullptr, 10);
    Random random;
    makeFolder(root);
    if (kind == "wide") makeWide(root, items, random);
    if (kind == "deep") makeDeep(root, items, random);
    if (kind == "mixed") makeMixed(root, items, random);
    return 0;
}

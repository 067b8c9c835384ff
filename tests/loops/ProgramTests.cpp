// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program itself: its help, its one sentence about a fault, its exit status, its files.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sys/wait.h>

namespace {

struct Outcome {
    int status = -1;
    std::string said; // on both outputs
};

Outcome runProgram(const std::string& arguments) {
    const char* build = std::getenv("TONEWRIGHT_BUILD_DIR");
    const std::string command =
        "'" + std::string(build == nullptr ? "." : build) + "/bin/tonewright-loops' " + arguments + " 2>&1";
    Outcome outcome;
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        outcome.said.append(buffer.data(), count);
    }
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
}

class LoopsProgram : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "tonewright-loops-XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(folder / name) << text;
        return "'" + (folder / name).string() + "'";
    }

    std::filesystem::path folder;
};

TEST_F(LoopsProgram, SaysWhatItCanDo) {
    const Outcome outcome = runProgram("--help");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.said.find("--wav RECIPE FILE"), std::string::npos);
}

TEST_F(LoopsProgram, NamesTheLineOfAFaultInOneSentence) {
    const std::string file = write("1.loop", "title A\ntempo 120\nplay kazoo\n");
    const Outcome outcome = runProgram(file + " --out '" + folder.string() + "'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.said.find("1.loop:3: unknown instrument 'kazoo'"), std::string::npos) << outcome.said;
    EXPECT_EQ(std::count(outcome.said.begin(), outcome.said.end(), '\n'), 1);
    EXPECT_FALSE(std::filesystem::exists(folder / "1.m4a"));
}

TEST_F(LoopsProgram, WritesLoopsAndSamples) {
    const std::string file = write("7.loop", "title A\ntempo 120\nbars 1\ndrums tight\nkick x...\n");
    const Outcome loop = runProgram(file + " --out '" + (folder / "new").string() + "'");
    EXPECT_EQ(loop.status, 0);
    EXPECT_EQ(loop.said, "");
    EXPECT_TRUE(std::filesystem::exists(folder / "new/7.m4a"));
    EXPECT_FALSE(std::filesystem::exists(folder / "new/7.m4a.part"));

    const Outcome wav = runProgram("--wav " + file + " '" + (folder / "7.wav").string() + "'");
    EXPECT_EQ(wav.status, 0);
    EXPECT_EQ(std::filesystem::file_size(folder / "7.wav"), 58U + 88200U * 2 * 4);
}

TEST_F(LoopsProgram, RefusesNonsense) {
    for (const char* arguments : {"", "--frob", "1.loop", "--wav 1.loop", "--out x"}) {
        EXPECT_EQ(runProgram(arguments).status, 2) << arguments;
    }
    EXPECT_EQ(runProgram("missing.loop --out '" + folder.string() + "'").status, 1);
}

} // namespace

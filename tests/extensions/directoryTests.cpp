// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Extensions/directories.hpp"
#include "shared/Common/Extensions/safeprint.hpp"
#include "tests/support/waitFor.hpp"

namespace {

using namespace tonewright;
using namespace tonewright::test;
using platform::URL;

// Returns the lines that tasks on the main queue have printed so far.
Lines linesOf(CapturedOutput& output) {
    safeprint("end");
    EXPECT_TRUE(waitFor([&] { return !output.lines().empty() && output.lines().back() == "end"; }));
    Lines lines = output.take();
    lines.pop_back();
    return lines;
}

TEST(Directories, AreMadeWithThoseAboveUnlessSomethingIsThere) {
    const Scratch scratch;
    const std::string file = scratch.file("file");
    CapturedOutput output;
    using Case = std::tuple<std::string, bool, bool>; // path, exists afterwards, is a directory
    for (const auto& [path, exists, isDirectory] :
         {Case{scratch.folder("folder"), true, true}, Case{scratch / "a/b/ü %/d", true, true},
          Case{file, true, false}, Case{file + "/below/it", false, false},
          Case{"/proc/none/here", false, false}}) {
        EXPECT_EQ(ensureDirectoryExists(URL::fileURLWithPath(path, true)), exists) << path;
        EXPECT_EQ(std::filesystem::is_directory(path), isDirectory) << path;
        const Lines lines = linesOf(output);
        ASSERT_EQ(lines.size(), exists ? 0U : 1U);
        if (exists) continue;
        EXPECT_TRUE(lines[0].starts_with("ensureDirectoryExists() : ERROR: Creating required directory '" +
                                         path + "' failed: ") &&
                    lines[0].ends_with("."))
            << lines[0];
    }
    const std::string elsewhere = scratch / "elsewhere";
    EXPECT_FALSE(ensureDirectoryExists(*URL::fromString("http://host.example" + elsewhere)));
    EXPECT_FALSE(std::filesystem::exists(elsewhere));
    EXPECT_EQ(linesOf(output).size(), 1U);
}

TEST(Directories, OfTheProcessAreKnownOnceTheyAreAskedFor) {
    EXPECT_EQ(documentsURL(), std::nullopt);
    EXPECT_EQ(resourcesURL(), std::nullopt);
    const std::string origin = "AudioUnitViewController::getPaths() : Audio Unit's ";
    const auto resources = platform::Bundle::main().resourceURL();
    if (!resources) {
        EXPECT_DEATH(getPaths(), "Unexpectedly found nil while unwrapping an Optional value");
        return;
    }
    CapturedOutput output;
    getPaths();
    EXPECT_TRUE(output.lines().empty());
    ASSERT_TRUE(documentsURL());
    EXPECT_EQ(resourcesURL(), resources);
    EXPECT_EQ(linesOf(output), (Lines{origin + "documents path is: " + documentsURL()->path(),
                                      origin + "resources path is: " + resources->path()}));
    EXPECT_EQ(sharedURLAudio(), std::nullopt);
    EXPECT_EQ(sharedURLMIDI(), std::nullopt);
}

} // namespace

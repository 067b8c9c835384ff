// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Extensions/directories.hpp"
#include "shared/Common/Extensions/safeprint.hpp"
#include "tests/support/CapturedOutput.hpp"
#include "tests/support/Scratch.hpp"

#include <gtest/gtest.h>

namespace {

using namespace tonewright;
using namespace tonewright::test;
using platform::URL;
using Lines = std::vector<std::string>;

// Returns the lines that the main queue writes, up to now.
Lines linesOf(CapturedOutput& output) {
    safeprint("end");
    EXPECT_TRUE(platform::RunLoop::current().runUntil(
        [&] { return !output.lines().empty() && output.lines().back() == "end"; }, 10));
    Lines lines = output.take();
    lines.pop_back();
    return lines;
}

TEST(Directories, AreMadeWithThoseAboveUnlessSomethingIsThere) {
    const Scratch scratch;
    const std::string file = scratch.file("file");
    const std::string failed = "ensureDirectoryExists() : ERROR: Creating required directory '";
    struct Case {
        std::string path;
        bool exists;
        bool isDirectory;
    };
    CapturedOutput output;
    for (const Case& each : std::vector<Case>{{scratch.folder("folder"), true, true},
                                              {scratch / "new", true, true},
                                              {scratch / "a/b/ü %/d", true, true},
                                              {file, true, false},
                                              {file + "/below/it", false, false},
                                              {"/proc/none/here", false, false},
                                              {scratch / std::string(300, 'x'), false, false}}) {
        SCOPED_TRACE(each.path.substr(0, 80));
        EXPECT_EQ(ensureDirectoryExists(URL::fileURLWithPath(each.path, true)), each.exists);
        std::error_code ignored;
        EXPECT_EQ(std::filesystem::is_directory(each.path, ignored), each.isDirectory);
        const Lines lines = linesOf(output);
        ASSERT_EQ(lines.size(), each.exists ? 0U : 1U);
        if (!each.exists) {
            EXPECT_TRUE(lines[0].starts_with(failed + each.path + "' failed: ")) << lines[0];
            EXPECT_TRUE(lines[0].ends_with(".")) << lines[0];
        }
    }
    EXPECT_EQ(contentOf(file), "");
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

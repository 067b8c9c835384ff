// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests loading files and the endless loop.
#include "tests/app/engineFixture.hpp"
#include "tests/app/recordedGraph.hpp"

namespace tonewright::test {
namespace {

using LoopTest = EngineFixture;

std::string looped(const platform::URL& url, int count) {
    return "AUEnginePlayer: Current audio file '" + url.path() + "' looped: " + std::to_string(count) + ".";
}

TEST_F(LoopTest, LoadWhilePlayingReportsOneLoopAndThenCounts) {
    player->start();
    takeLines();
    const auto url = constantFile("a.wav", 3001, 0.25F);
    player->load(url);
    renderUntil([&] { return delegate->loops.size() >= 4; });
    expectInOrder({looped(url, 1), looped(url, 2), looped(url, 3), looped(url, 4)});
    EXPECT_EQ((std::vector(delegate->loops.begin(), delegate->loops.begin() + 4)),
              (std::vector<std::int64_t>{0, 1, 2, 3}));
    // Once the new file is heard, its passes follow one another without a gap.
    EXPECT_EQ(render(48000), std::vector<float>(48000, 0.25F));
}

TEST_F(LoopTest, AFileLoadedInsideOnFileSelectIsTheOneThatIsWired) {
    const auto outer = constantFile("outer.wav", 3000, 0.25F);
    const auto inner = constantFile("inner.wav", 3000, 0.5F, 1);
    delegate->inside = [&](const std::string&) {
        delegate->inside = nullptr;
        player->load(inner);
    };
    GraphRecord record;
    player->load(outer);
    EXPECT_TRUE(record.text().ends_with("; connect player to mixer, 48000 Hz, 1"));
}

TEST_F(LoopTest, UnopenableFilesKeepTheFormerOnePlayingUnderTheNewName) {
    player->start();
    player->load(constantFile("good.wav", 4000, 0.5F));
    renderUntil([&] { return delegate->loops.size() >= 2; });
    const auto files = delegate->files;
    for (const char* name : {"missing.m4a", "text.m4a"}) {
        if (name[0] == 't') scratch.file(name, "this is not sound\n");
        const auto url = platform::URL::fileURLWithPath(scratch / name, false);
        takeLines();
        player->load(url);
        EXPECT_TRUE(
            holdsLine(output.lines(), "AUEnginePlayer::ERROR: Could not create AVAudioFile instance for URL "
                                      "'Optional(" +
                                          url.absoluteString() + ")'. error: "))
            << name;
        EXPECT_EQ(delegate->files, files);
        delegate->loops.clear();
        const auto heard = renderUntil([&] { return delegate->loops.size() >= 2; });
        EXPECT_EQ(heard, std::vector<float>(heard.size(), 0.5F));
        EXPECT_EQ(delegate->loops.front(), 0); // loading resets the count
        expectInOrder({looped(url, 1), looped(url, 2)});
    }
}

} // namespace
} // namespace tonewright::test

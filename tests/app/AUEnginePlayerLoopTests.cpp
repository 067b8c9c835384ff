// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loading files and the endless loop.
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
    // Once the new file sounds, nothing interrupts it: the passes follow without a gap.
    EXPECT_EQ(render(48000), std::vector<float>(48000, 0.25F));
}

TEST_F(LoopTest, AFileLoadedInsideOnFileSelectIsTheOneThatIsWired) {
    const auto outer = constantFile("outer.wav", 3000, 0.25F);
    const auto inner = constantFile("inner.wav", 3000, 0.5F, 1);
    struct Loading final : AUEnginePlayerDelegate {
        std::function<void()> loadOnce;
        void onPlayerStateChanged(bool) override {}
        void onFileSelect(const std::string&) override {
            if (const auto load = std::exchange(loadOnce, nullptr)) load();
        }
        void onLoop(std::int64_t) override {}
    };
    const auto loading = std::make_shared<Loading>();
    loading->loadOnce = [&] { player->load(inner); };
    player->delegate = loading;
    GraphRecord record;
    player->load(outer);
    EXPECT_EQ(record.take().back(), "connect player to mixer, 48000 Hz, 1");
}

TEST_F(LoopTest, UnopenableFilesKeepTheFormerOnePlayingUnderTheNewName) {
    player->start();
    player->load(constantFile("good.wav", 4000, 0.5F));
    renderUntil([&] { return delegate->loops.size() >= 2; });
    scratch.file("empty.m4a");
    scratch.file("text.m4a", "this is not sound\n");
    scratch.file("truncated.wav", std::string("RIFF\x24\0\0\0WAVEfmt ", 16));
    (void)constantFile("no frames.wav", 0, 0);
    const auto files = delegate->files;
    for (const char* name : {"missing.m4a", "empty.m4a", "text.m4a", "truncated.wav", "no frames.wav"}) {
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
        EXPECT_EQ(delegate->loops.front(), 0); // loading started the count anew
        expectInOrder({looped(url, 1), looped(url, 2)});
    }
}

} // namespace
} // namespace tonewright::test

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loading files and the endless loop.
#include "tests/app/engineFixture.hpp"
#include "tests/app/recordedGraph.hpp"

#include <algorithm>

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
    const auto lines = takeLines();
    EXPECT_TRUE(holdInOrder(lines, {looped(url, 1), looped(url, 2), looped(url, 3), looped(url, 4)}));
    for (std::size_t i = 0; i < delegate->loops.size(); ++i) {
        EXPECT_EQ(delegate->loops[i], static_cast<std::int64_t>(i));
    }
    // Once the new file sounds, nothing interrupts it: the passes follow without a gap.
    const auto heard = render(48000);
    EXPECT_TRUE(std::all_of(heard.begin(), heard.end(), [](float sample) { return sample == 0.25F; }));
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
    const auto good = constantFile("good.wav", 4000, 0.5F);
    player->load(good);
    renderUntil([&] { return delegate->loops.size() >= 2; });
    takeLines();
    const std::vector<platform::URL> bad = {
        platform::URL::fileURLWithPath("/nonexistent/7.m4a", false),
        rawFile("empty.m4a", ""),
        rawFile("text.m4a", "this is not sound\n"),
        rawFile("truncated.wav", std::string("RIFF\x24") + std::string(3, '\0') + "WAVEfmt "),
        constantFile("no frames.wav", 0, 0),
    };
    for (const auto& url : bad) {
        const auto files = delegate->files.size();
        player->load(url);
        const auto lines = output.take();
        EXPECT_TRUE(holdsLine(
            lines, "AUEnginePlayer::ERROR: Could not create AVAudioFile instance for URL 'Optional(" +
                       url.absoluteString() + ")'. error: "))
            << url.absoluteString();
        EXPECT_EQ(delegate->files.size(), files);
        delegate->loops.clear();
        const auto heard = renderUntil([&] { return delegate->loops.size() >= 2; });
        EXPECT_TRUE(std::all_of(heard.begin(), heard.end(), [](float sample) { return sample == 0.5F; }));
        EXPECT_EQ(delegate->loops.front(), 0); // loading started the count anew
        EXPECT_TRUE(holdInOrder(takeLines(), {looped(url, 1), looped(url, 2)}));
    }
}

} // namespace
} // namespace tonewright::test

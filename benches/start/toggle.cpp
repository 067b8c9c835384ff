// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures how long Play and Stop block the main thread. Uses the extension manager and the engine player as
// the application does, with the effect and the sound server, but without a window. Writes "toggle
// MILLISECONDS" for each toggle (alternating starts and stops) to standard error.
#include "app/Audio Engine/AUExtensionManager.hpp"
#include "platform/dispatch/RunLoop.hpp"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace tonewright;

namespace {

constexpr double TimeLimit = 30; // seconds

// Takes the place of the application's main screen.
struct Screen final : AUExtensionManagerDelegate, AUEnginePlayerDelegate {
    bool isReady = false;
    int reports = 0;

    void onFoundComponent(const std::shared_ptr<platform::AVAudioUnit>&) override {}
    void onEngineInitialized() override { isReady = true; }
    void onPlayerStateChanged(bool) override { ++reports; }
    void onFileSelect(const std::string&) override {}
    void onLoop(std::int64_t) override {}
};

} // namespace

int main(int argc, char** argv) {
    const int toggles = argc > 1 ? std::atoi(argv[1]) : 60;
    auto loop = platform::RunLoop::current();
    const auto screen = std::make_shared<Screen>();
    const auto manager = AUExtensionManager::create(screen);
    manager->auEngine->delegate = screen;
    if (!loop.runUntil([&] { return screen->isReady; }, TimeLimit)) {
        std::fputs("no effect was found\n", stderr);
        return EXIT_FAILURE;
    }
    for (int i = 0; i < toggles; ++i) {
        const auto before = std::chrono::steady_clock::now();
        manager->togglePlayback();
        const std::chrono::duration<double, std::milli> held = std::chrono::steady_clock::now() - before;
        std::fprintf(stderr, "toggle %.3f\n", held.count());
        if (!loop.runUntil([&] { return screen->reports == i + 1; }, TimeLimit)) return EXIT_FAILURE;
        loop.runFor(0.25); // wait until the sound has started or stopped
    }
    manager->cleanup();
    return EXIT_SUCCESS;
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How long a press of Play or Stop holds the main thread: the manager and the engine player as the
// application uses them, with the effect and the sound server, without a window. Writes "toggle MILLISECONDS"
// for each of the toggles (starts and stops by turns) to standard error.
#include "app/Audio Engine/AUExtensionManager.hpp"
#include "platform/dispatch/RunLoop.hpp"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace tonewright;

namespace {

constexpr double TimeLimit = 30; // seconds

// Stands in for the screen.
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
        loop.runFor(0.25); // sound comes, or goes
    }
    manager->cleanup();
    return EXIT_SUCCESS;
}

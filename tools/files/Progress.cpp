// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/files/Progress.hpp"

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace tonewright::tool {

Progress::Progress(std::function<std::string()> state)
    : _state(std::move(state)) {
    if (::isatty(STDERR_FILENO) != 0) _thread = std::thread([this] { run(); });
}

Progress::~Progress() {
    if (!_thread.joinable()) return;
    {
        const std::scoped_lock lock(_mutex);
        _hasEnded = true;
    }
    _changed.notify_one();
    _thread.join();
}

void Progress::run() {
    using namespace std::chrono_literals;
    std::unique_lock lock(_mutex);
    auto wait = 1000ms;
    bool isShown = false;
    while (!_changed.wait_for(lock, wait, [this] { return _hasEnded; })) {
        wait = 200ms;
        isShown = true;
        // The cursor returns to the start of the line, so that other output overwrites the progress.
        std::fprintf(stderr, "\033[K%s\r", _state().c_str());
        std::fflush(stderr);
    }
    if (isShown) std::fprintf(stderr, "\033[K");
}

} // namespace tonewright::tool

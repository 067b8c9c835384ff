// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tools/files/ScanProgress.hpp"

#include "shared/Common/Files/FileBase.hpp"

#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace tonewright::tool {

ScanProgress::ScanProgress()
    : _firstID(FileBase::lastID()) {
    if (::isatty(STDERR_FILENO) != 0) _thread = std::thread([this] { run(); });
}

ScanProgress::~ScanProgress() {
    if (!_thread.joinable()) return;
    {
        const std::scoped_lock lock(_mutex);
        _hasEnded = true;
    }
    _changed.notify_one();
    _thread.join();
}

void ScanProgress::run() {
    using namespace std::chrono_literals;
    std::unique_lock lock(_mutex);
    auto wait = 1000ms;
    bool isShown = false;
    while (!_changed.wait_for(lock, wait, [this] { return _hasEnded; })) {
        wait = 200ms;
        isShown = true;
        std::fprintf(stderr, "\r%lld items", static_cast<long long>(FileBase::lastID() - _firstID));
        std::fflush(stderr);
    }
    if (isShown) std::fprintf(stderr, "\r\033[K");
}

} // namespace tonewright::tool

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/unit/runApart.hpp"

#include <thread>

namespace platform::lv2 {

std::shared_future<void> runApart(std::function<void()> task) {
    std::promise<void> ended;
    std::shared_future<void> future = ended.get_future().share();
    std::thread([task = std::move(task), ended = std::move(ended)]() mutable {
        task();
        task = nullptr; // the captures are released before the future becomes ready
        ended.set_value();
    }).detach();
    return future;
}

} // namespace platform::lv2

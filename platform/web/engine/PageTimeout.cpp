// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/engine/PageTimeout.hpp"

#include <algorithm>
#include <utility>

namespace platform {

void PageTimeout::set(double seconds, std::function<void()> onTimeout) {
    stop();
    _seconds = seconds;
    _onTimeout = std::move(onTimeout);
}

void PageTimeout::start() {
    stop();
    if (_seconds <= 0) return;
    constexpr double Longest = 86'400; // seconds
    const auto milliseconds = static_cast<guint>(std::min(_seconds, Longest) * 1000);
    const auto onTime = +[](gpointer data) -> gboolean {
        auto* self = static_cast<PageTimeout*>(data);
        self->_source = 0;
        self->_onTimeout();
        return G_SOURCE_REMOVE;
    };
    _source = g_timeout_add(milliseconds, onTime, this);
}

void PageTimeout::restart() {
    if (_source != 0) start();
}

void PageTimeout::stop() {
    if (_source != 0) g_source_remove(std::exchange(_source, 0));
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/outside/Chatter.hpp"

#include "platform/foundation/console.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace platform::lv2 {
namespace {

constexpr std::chrono::seconds Second{1};
// The kernel keeps as much in a pipe, and what an ended process has left there is at most that.
constexpr std::size_t PipeBytes = 65536;

// Returns whether a terminal could take the character for a command.
bool isControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return (code < 0x20 && character != '\t') || code == 0x7F;
}

} // namespace

ChatterFilter::ChatterFilter(std::string name, std::function<void(std::string_view)> write)
    : _name(std::move(name))
    , _write(std::move(write)) {}

void ChatterFilter::take(std::string_view text, Time now) {
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view part = text.substr(0, end);
        const std::size_t room = LongestLine - _line.size();
        _line.append(part.substr(0, room));
        _isLong = _isLong || part.size() > room;
        if (end == std::string_view::npos) return;
        endLine(now);
        text.remove_prefix(end + 1);
    }
}

void ChatterFilter::timePassed(Time now) {
    if (now - _second < Second) return;
    reportDropped();
    _second = now;
    _written = 0;
}

void ChatterFilter::finish(Time now) {
    if (!_line.empty()) endLine(now);
    reportDropped();
}

void ChatterFilter::endLine(Time now) {
    timePassed(now);
    if (_written < MostLines) {
        ++_written;
        std::ranges::replace_if(_line, isControl, '?');
        _write(_name + ": " + _line + (_isLong ? " [...]" : ""));
    } else {
        ++_dropped;
    }
    _line.clear();
    _isLong = false;
}

void ChatterFilter::reportDropped() {
    if (_dropped == 0) return;
    _write(_name + ": " + std::to_string(_dropped) + (_dropped == 1 ? " more line." : " more lines."));
    _dropped = 0;
}

void passOnChatter(int pipe, int process, const std::string& name) {
    ChatterFilter filter(name, warn);
    std::array<char, 4096> buffer{};
    // Another process may still hold the other end of the pipe when the process has ended.
    std::size_t left = PipeBytes;
    while (left > 0) {
        std::array events{pollfd{pipe, POLLIN, 0}, pollfd{process, POLLIN, 0}};
        const int limit =
            filter.hasDropped() ? static_cast<int>(std::chrono::milliseconds(Second).count()) : -1;
        if (::poll(events.data(), events.size(), limit) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        const auto now = std::chrono::steady_clock::now();
        filter.timePassed(now);
        const bool hasEnded = events[1].revents != 0;
        if (events[0].revents == 0) {
            if (hasEnded) break;
            continue;
        }
        const ssize_t length = ::read(pipe, buffer.data(), buffer.size());
        if (length < 0 && errno == EINTR) continue;
        if (length <= 0) break; // nobody writes any more
        filter.take({buffer.data(), static_cast<std::size_t>(length)}, now);
        if (hasEnded) left -= std::min(left, static_cast<std::size_t>(length));
    }
    filter.finish(std::chrono::steady_clock::now());
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What a process of an effect writes to its standard output and standard error. Lines of it are passed on to
// standard error, but not more than a person can read.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace platform::lv2 {

/// Splits text into lines and drops those that are too many. Has no clock. One thread.
class ChatterFilter {
  public:
    using Time = std::chrono::steady_clock::time_point;
    /// The lines that are passed on in one second.
    static constexpr int MostLines = 20;
    /// The bytes of a line that are passed on; the rest of a longer line is dropped.
    static constexpr std::size_t LongestLine = 1024;

    /// Passes lines, without their ends, to `write`. Each begins with `name` and a colon.
    ChatterFilter(std::string name, std::function<void(std::string_view)> write);

    /// Takes text that arrived at `now`. It may end inside a line, which is kept until its end arrives.
    void take(std::string_view text, Time now);
    /// Writes how many lines were dropped if the second in which that happened is over at `now`.
    void timePassed(Time now);
    /// Writes what is left: a line without an end, and the number of dropped lines.
    void finish(Time now);
    /// Returns whether there are dropped lines that have not been reported.
    [[nodiscard]] bool hasDropped() const noexcept { return _dropped > 0; }

  private:
    void endLine(Time now);
    void reportDropped();

    const std::string _name;
    const std::function<void(std::string_view)> _write;
    std::string _line;    // at most LongestLine bytes
    bool _isLong = false; // whether bytes of the line were dropped
    Time _second{};       // the beginning of the present second
    int _written = 0;     // lines in the present second
    std::size_t _dropped = 0;
};

/// Passes on what arrives at `pipe` until the process of `process`, a process descriptor, has ended. Reports
/// it with `name`. Blocks.
void passOnChatter(int pipe, int process, const std::string& name);

} // namespace platform::lv2

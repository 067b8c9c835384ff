// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The same on other libraries' timers and on none: the dates of the firings in seconds since the timer was
// started.
#pragma once

#include <vector>

namespace bench {

using Dates = std::vector<double>;

[[nodiscard]] Dates bareDates(double interval, double seconds);
[[nodiscard]] Dates glibDates(double interval, double seconds);
[[nodiscard]] Dates qtDates(double interval, double seconds);

} // namespace bench

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The timers that ours are compared with. Each function runs a timer for `seconds` and returns when it fired,
// in seconds since it was started.
#pragma once

#include <vector>

namespace bench {

using Dates = std::vector<double>;

[[nodiscard]] Dates bareDates(double interval, double seconds);
[[nodiscard]] Dates glibDates(double interval, double seconds);
[[nodiscard]] Dates qtDates(double interval, double seconds);

} // namespace bench

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Dates as people read them: the medium date and time styles of the locale "en_US", whatever the user's
// locale, in the local time zone, seconds truncated. Any thread. Source of the pattern "MMM d, y 'at' h:mm:ss
// a": CLDR, en.
#pragma once

#include "platform/foundation/Date.hpp"

#include <string>

namespace platform {

/// The largest size of a text of `writeMediumDateTime`, in bytes.
inline constexpr std::size_t MediumDateTimeLength = 48;

class DateFormatter {
  public:
    /// Returns the text, for example "Nov 16, 2026 at 9:40:14 AM".
    [[nodiscard]] std::string stringFromDate(const Date& date) const;
    /// Writes the text to `text`, which has space for `MediumDateTimeLength` bytes; returns the end of what
    /// was written.
    static char* writeMediumDateTime(char* text, const Date& date);
    /// Reads the time zone (`TZ`, /etc/localtime) again; otherwise the formatter keeps what it has read.
    static void resetTimeZone();
};

} // namespace platform

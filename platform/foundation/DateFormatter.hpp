// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Formats dates for people, in the local time zone and with truncated seconds. The format is the medium date
// and time style of the locale "en_US", independent of the user's locale: "MMM d, y 'at' h:mm:ss a" (from
// CLDR, en). Any thread.
#pragma once

#include "platform/foundation/Date.hpp"

#include <string>

namespace platform {

/// The size in bytes of the longest text that `writeMediumDateTime` writes.
inline constexpr std::size_t MediumDateTimeLength = 48;

class DateFormatter {
  public:
    /// Returns the text of `date`, for example "Nov 16, 2026 at 9:40:14 AM".
    [[nodiscard]] std::string stringFromDate(const Date& date) const;
    /// Writes the text of `date` to `text`, which must have room for `MediumDateTimeLength` bytes. Returns
    /// the end of the written text.
    static char* writeMediumDateTime(char* text, const Date& date);
    /// Reads the time zone (`TZ`, /etc/localtime) again. Formatters notice a changed time zone only after
    /// this.
    static void resetTimeZone();
};

} // namespace platform

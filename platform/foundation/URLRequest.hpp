// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A request to the network or the web view. A value; any thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <cstdint>
#include <utility>

namespace platform {

/// The rule for caches. Only the protocol's own is known; nothing is kept between requests.
enum class URLRequestCachePolicy : std::uint8_t { UseProtocolCachePolicy = 0 };

struct URLRequest {
    explicit URLRequest(URL location)
        : url(std::move(location)) {}

    URL url;
    URLRequestCachePolicy cachePolicy = URLRequestCachePolicy::UseProtocolCachePolicy;
    double timeoutInterval = 60.0; // seconds without any progress after which the transfer fails
};

} // namespace platform

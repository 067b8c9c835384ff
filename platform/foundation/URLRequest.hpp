// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A request to the network or the web view. Any thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <cstdint>
#include <utility>

namespace platform {

/// How a request uses caches. The only policy is that of the protocol. Nothing is cached between requests.
enum class URLRequestCachePolicy : std::uint8_t { UseProtocolCachePolicy = 0 };

struct URLRequest {
    explicit URLRequest(URL location)
        : url(std::move(location)) {}

    URL url;
    URLRequestCachePolicy cachePolicy = URLRequestCachePolicy::UseProtocolCachePolicy;
    double timeoutInterval = 60.0; // the transfer fails after so many seconds without progress
};

} // namespace platform

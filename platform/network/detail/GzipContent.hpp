// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Unpacks content that a server sends compressed, piece by piece and in constant memory, and knows whether
// all of it has arrived. Used from one thread at a time.
#pragma once

#include "platform/foundation/Error.hpp"

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>

typedef struct _GConverter GConverter;

namespace platform {

class GzipContent {
  public:
    GzipContent();
    ~GzipContent();
    GzipContent(const GzipContent&) = delete;
    GzipContent& operator=(const GzipContent&) = delete;

    using Append = std::function<std::optional<Error>(std::span<const std::byte>)>;
    /// Unpacks the next `bytes` and passes the result to `append`; returns the error that prevents it.
    [[nodiscard]] std::optional<Error> unpack(std::span<const std::byte> bytes, const Append& append);
    /// Returns whether the bytes so far end where a compressed stream does, or there were none.
    [[nodiscard]] bool isWhole() const noexcept { return !_isInside; }

  private:
    GConverter* _converter;
    bool _isInside = false; // a stream has begun and not ended
    bool _hasEnded = false; // at least one stream was complete
    std::array<std::byte, 65536> _unpacked{};
};

} // namespace platform

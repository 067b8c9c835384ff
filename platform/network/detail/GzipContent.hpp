// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decompresses gzip content piece by piece, in constant memory, and detects whether all of it has arrived.
// One thread at a time.
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
    /// Decompresses the next `bytes` and passes the result to `append`. Returns the error if that fails.
    [[nodiscard]] std::optional<Error> unpack(std::span<const std::byte> bytes, const Append& append);
    /// Returns whether the bytes so far end at the end of a gzip stream. True if there were no bytes.
    [[nodiscard]] bool isWhole() const noexcept { return !_isInside; }

  private:
    GConverter* _converter;
    bool _isInside = false; // a stream has begun and has not ended yet
    bool _hasEnded = false; // at least one stream has ended
    std::array<std::byte, 65536> _unpacked{};
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The destination of a transfer's content: memory or a temporary file. Used from one thread at a time.
#pragma once

#include "platform/network/URLSession.hpp"

#include <span>

namespace platform {

class ContentSink {
  public:
    virtual ~ContentSink() = default;

    /// Appends `bytes`, or returns the error that prevents it.
    [[nodiscard]] virtual std::optional<Error> append(std::span<const std::byte> bytes) = 0;
    /// Calls the completion with the content, or with `error`.
    virtual void deliver(const std::shared_ptr<URLResponse>& response, std::optional<Error> error) = 0;
};

[[nodiscard]] std::unique_ptr<ContentSink> makeDataSink(DataCompletion completion);
[[nodiscard]] std::unique_ptr<ContentSink> makeDownloadSink(DownloadCompletion completion);

} // namespace platform

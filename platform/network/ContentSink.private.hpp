// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where the content of a transfer goes: into memory or into a temporary file. Used from one thread at a time.
// Private to platform/network.
#pragma once

#include "platform/network/URLSession.hpp"

#include <span>

namespace platform {

class ContentSink {
  public:
    virtual ~ContentSink() = default;

    /// Appends `bytes`; gives the error that prevents it.
    [[nodiscard]] virtual std::optional<Error> append(std::span<const std::byte> bytes) = 0;
    /// Calls the completion with what came, or with `error`.
    virtual void deliver(const std::shared_ptr<URLResponse>& response, std::optional<Error> error) = 0;
};

[[nodiscard]] std::unique_ptr<ContentSink> makeDataSink(DataCompletion completion);
[[nodiscard]] std::unique_ptr<ContentSink> makeDownloadSink(DownloadCompletion completion);

} // namespace platform

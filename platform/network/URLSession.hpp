// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loads the content of URLs: http and https over the network, file from the disk. A transfer runs in the
// background, and its completion is called once, on the session's queue. All operations may be called on any
// thread except the audio thread. If a server sends neither a Content-Length nor chunks, the content ends
// when the connection does, so truncated content cannot be detected.
#pragma once

#include "platform/foundation/Error.hpp"
#include "platform/foundation/Result.hpp"
#include "platform/foundation/URL.hpp"
#include "platform/foundation/URLRequest.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class DispatchQueue;

/// The description of a transfer's content.
class URLResponse {
  public:
    URLResponse(URL url, std::string mimeType, std::int64_t expectedContentLength)
        : _url(std::move(url))
        , _mimeType(std::move(mimeType))
        , _expectedContentLength(expectedContentLength) {}
    virtual ~URLResponse() = default;

    /// Returns the URL that the content came from: after redirects, the last one.
    [[nodiscard]] const URL& url() const noexcept { return _url; }
    /// Returns the MIME type of the content; empty if the server does not state one, and for files.
    [[nodiscard]] const std::string& mimeType() const noexcept { return _mimeType; }
    /// Returns the announced length of the content in bytes, or -1 if it is unknown.
    [[nodiscard]] std::int64_t expectedContentLength() const noexcept { return _expectedContentLength; }

  private:
    URL _url;
    std::string _mimeType;
    std::int64_t _expectedContentLength;
};

class HTTPURLResponse final : public URLResponse {
  public:
    HTTPURLResponse(URL url, std::string mimeType, std::int64_t expectedContentLength, int statusCode)
        : URLResponse(std::move(url), std::move(mimeType), expectedContentLength)
        , _statusCode(statusCode) {}

    [[nodiscard]] int statusCode() const noexcept { return _statusCode; }

  private:
    int _statusCode;
};

struct URLSessionConfiguration {
    /// Returns the default configuration.
    [[nodiscard]] static URLSessionConfiguration defaultSessionConfiguration() { return {}; }
};

/// Content in memory. Immutable; copies share the bytes.
class URLData {
  public:
    URLData() = default;
    URLData(std::shared_ptr<const std::byte> bytes, std::size_t size)
        : _bytes(std::move(bytes))
        , _size(size) {}

    [[nodiscard]] const std::byte* data() const noexcept { return _bytes.get(); }
    [[nodiscard]] std::size_t size() const noexcept { return _size; }
    [[nodiscard]] const std::byte* begin() const noexcept { return data(); }
    [[nodiscard]] const std::byte* end() const noexcept { return data() + _size; }

  private:
    std::shared_ptr<const std::byte> _bytes;
    std::size_t _size = 0;
};

/// Receives the content, or the error if there is none. Content of more than 256 MiB is an error.
using DataCompletion =
    std::function<void(const std::optional<URLData>& data, const std::shared_ptr<URLResponse>& response,
                       const std::optional<Error>& error)>;
/// Receives the location of a temporary file with the content, or the error if there is none. The file can be
/// read and copied until the call returns. It cannot be moved, because it usually has no name except its
/// entry in /proc/self/fd.
using DownloadCompletion =
    std::function<void(const std::optional<URL>& location, const std::shared_ptr<URLResponse>& response,
                       const std::optional<Error>& error)>;

/// One transfer, which starts when it is resumed. A transfer whose task object is released continues.
class URLSessionTask {
  public:
    class Transfer;
    explicit URLSessionTask(std::shared_ptr<Transfer> transfer)
        : _transfer(std::move(transfer)) {}

    /// Starts the transfer. Further calls have no effect.
    void resume();
    /// Cancels the transfer: the completion is called with an error, unless it has been called already.
    void cancel();
    /// Returns the number of bytes of content that have arrived.
    [[nodiscard]] std::int64_t countOfBytesReceived() const noexcept;

  private:
    std::shared_ptr<Transfer> _transfer;
};

class URLSession {
  public:
    /// Returns the session that the whole process shares.
    [[nodiscard]] static std::shared_ptr<URLSession> sharedSession();
    [[nodiscard]] static std::shared_ptr<URLSession> create(const URLSessionConfiguration& configuration);
    ~URLSession();
    URLSession(const URLSession&) = delete;
    URLSession& operator=(const URLSession&) = delete;

    [[nodiscard]] std::shared_ptr<URLSessionTask> dataTaskWithRequest(const URLRequest& request,
                                                                      DataCompletion completion);
    [[nodiscard]] std::shared_ptr<URLSessionTask> downloadTaskWithRequest(const URLRequest& request,
                                                                          DownloadCompletion completion);
    /// Returns the queue on which completions are called, one after the other. A task that a completion
    /// submits runs after the completion's temporary file has been removed.
    [[nodiscard]] DispatchQueue& delegateQueue() noexcept;

    class Implementation;

  private:
    explicit URLSession(std::shared_ptr<Implementation> implementation);
    std::shared_ptr<Implementation> _implementation;
};

/// Reads the whole content at `url` and returns when it has arrived; gives up after 60 seconds without
/// progress. Blocks.
[[nodiscard]] Result<URLData> contentsOfURL(const URL& url);

} // namespace platform

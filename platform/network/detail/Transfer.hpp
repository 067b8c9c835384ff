// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by a session and its transfers.
#pragma once

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/foundation/product.hpp"
#include "platform/network/URLSession.hpp"
#include "platform/network/detail/ContentSink.hpp"

#include <atomic>

typedef struct _SoupSession SoupSession;

namespace platform {

class URLSession::Implementation {
  public:
    Implementation();
    ~Implementation();
    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;

    /// Returns the libsoup session, which is created at the first call. On the network thread only.
    [[nodiscard]] SoupSession* connections();
    /// The queue on which completions are called.
    DispatchQueue queue{std::string(product::LabelPrefix) + "network"};

  private:
    SoupSession* _connections = nullptr; // used only on the network thread
};

/// One transfer. A subclass reads the content, the sink stores it.
class URLSessionTask::Transfer : public std::enable_shared_from_this<Transfer> {
  public:
    Transfer(std::shared_ptr<URLSession::Implementation> session, URLRequest request,
             std::unique_ptr<ContentSink> sink)
        : _session(std::move(session))
        , _request(std::move(request))
        , _sink(std::move(sink)) {}
    virtual ~Transfer() = default;
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    void resume() {
        if (!_began.exchange(true)) start();
    }
    virtual void cancel() = 0;
    [[nodiscard]] std::int64_t received() const noexcept { return _received; }

  protected:
    /// Starts; called once, from any thread.
    virtual void start() = 0;
    /// Calls the completion with the content, or with `error`. Only the first call has an effect.
    void finish(std::shared_ptr<URLResponse> response, std::optional<Error> error);

    /// Passes a piece of content to the sink, or returns the error that prevents it.
    [[nodiscard]] std::optional<Error> append(std::span<const std::byte> bytes) {
        _received.fetch_add(static_cast<std::int64_t>(bytes.size()), std::memory_order_relaxed);
        return _sink->append(bytes);
    }

    std::shared_ptr<URLSession::Implementation> _session;
    URLRequest _request;
    std::unique_ptr<ContentSink>
        _sink; // used by the thread that reads the content, then by the session's queue

  private:
    std::atomic<bool> _began{false};
    std::atomic<bool> _ended{false};
    std::atomic<std::int64_t> _received{0};
};

[[nodiscard]] std::shared_ptr<URLSessionTask::Transfer>
makeHTTPTransfer(std::shared_ptr<URLSession::Implementation> session, const URLRequest& request,
                 std::unique_ptr<ContentSink> sink);
[[nodiscard]] std::shared_ptr<URLSessionTask::Transfer>
makeFileTransfer(std::shared_ptr<URLSession::Implementation> session, const URLRequest& request,
                 std::unique_ptr<ContentSink> sink);

enum class TransferFailure {
    Cancelled = -999,
    TimedOut = -1001,
    UnsupportedURL = -1002,
    TooLarge = -1103,
    Failed = -1
};

/// Creates the error of a transfer.
[[nodiscard]] Error transferError(TransferFailure failure, std::string_view sentence);

} // namespace platform

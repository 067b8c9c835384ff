// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/network/URLSession.hpp"

#include "platform/network/detail/Transfer.hpp"

#include <future>

namespace platform {
namespace {

// The transfer of a URL whose scheme is not supported.
class NoTransfer final : public URLSessionTask::Transfer {
  public:
    using Transfer::Transfer;
    void cancel() override {}

  protected:
    void start() override {
        finish(nullptr, transferError(TransferFailure::UnsupportedURL,
                                      "The URL '" + _request.url.absoluteString() + "' is not supported."));
    }
};

std::shared_ptr<URLSessionTask> makeTask(const std::shared_ptr<URLSession::Implementation>& session,
                                         const URLRequest& request, std::unique_ptr<ContentSink> sink) {
    const std::string scheme = request.url.scheme();
    std::shared_ptr<URLSessionTask::Transfer> transfer;
    if (scheme == "http" || scheme == "https") {
        transfer = makeHTTPTransfer(session, request, std::move(sink));
    } else if (scheme == "file") {
        transfer = makeFileTransfer(session, request, std::move(sink));
    } else {
        transfer = std::make_shared<NoTransfer>(session, request, std::move(sink));
    }
    return std::make_shared<URLSessionTask>(std::move(transfer));
}

} // namespace

Error transferError(TransferFailure failure, std::string_view sentence) {
    return {"Network", static_cast<long>(failure), sentence};
}

void URLSessionTask::Transfer::finish(std::shared_ptr<URLResponse> response, std::optional<Error> error) {
    if (_ended.exchange(true)) return;
    _session->queue.async(
        [self = shared_from_this(), response = std::move(response), error = std::move(error)]() mutable {
            self->_sink->deliver(response, std::move(error));
            self->_sink.reset(); // releases the completion and its captures
        });
}

void URLSessionTask::resume() {
    _transfer->resume();
}

void URLSessionTask::cancel() {
    _transfer->cancel();
}

std::int64_t URLSessionTask::countOfBytesReceived() const noexcept {
    return _transfer->received();
}

std::shared_ptr<URLSession> URLSession::sharedSession() {
    static auto* session = new std::shared_ptr<URLSession>(create({})); // never destroyed
    return *session;
}

std::shared_ptr<URLSession> URLSession::create(const URLSessionConfiguration&) {
    return std::shared_ptr<URLSession>(new URLSession(std::make_shared<Implementation>()));
}

URLSession::URLSession(std::shared_ptr<Implementation> implementation)
    : _implementation(std::move(implementation)) {}
URLSession::~URLSession() = default;

std::shared_ptr<URLSessionTask> URLSession::dataTaskWithRequest(const URLRequest& request,
                                                                DataCompletion completion) {
    return makeTask(_implementation, request, makeDataSink(std::move(completion)));
}

std::shared_ptr<URLSessionTask> URLSession::downloadTaskWithRequest(const URLRequest& request,
                                                                    DownloadCompletion completion) {
    return makeTask(_implementation, request, makeDownloadSink(std::move(completion)));
}

DispatchQueue& URLSession::delegateQueue() noexcept {
    return _implementation->queue;
}

Result<URLData> contentsOfURL(const URL& url) {
    // Shared with the completion, which may still be inside `set_value` when `get` returns.
    const auto promise = std::make_shared<std::promise<Result<URLData>>>();
    const auto task = URLSession::create({})->dataTaskWithRequest(
        URLRequest(url), [promise](const std::optional<URLData>& data, const auto&, const auto& error) {
            if (error) {
                promise->set_value(*error);
            } else {
                promise->set_value(*data);
            }
        });
    task->resume();
    return promise->get_future().get();
}

} // namespace platform

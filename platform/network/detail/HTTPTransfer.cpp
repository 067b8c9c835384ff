// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The transfer of an http or https URL. Runs on the network thread, in constant memory.
#include "platform/foundation/product.hpp"
#include "platform/network/detail/ChunkedBody.hpp"
#include "platform/network/detail/GzipContent.hpp"
#include "platform/network/detail/NetworkThread.hpp"
#include "platform/network/detail/Transfer.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <libsoup/soup.h>
#include <string_view>

namespace platform {
namespace {

struct Unref {
    void operator()(gpointer object) const noexcept { g_object_unref(object); }
};
template <class T>
using Owned = std::unique_ptr<T, Unref>;

class HTTPTransfer final : public URLSessionTask::Transfer {
  public:
    using Transfer::Transfer;

    void cancel() override {
        onNetworkThread([](HTTPTransfer& transfer) {
            transfer._isCancelled = true;
            if (transfer._cancellable) g_cancellable_cancel(transfer._cancellable.get());
        });
    }

  protected:
    void start() override {
        onNetworkThread([](HTTPTransfer& transfer) { transfer.send(); });
    }

  private:
    using Self = std::shared_ptr<HTTPTransfer>;
    static constexpr int TimeoutParts = 8;

    Self self() { return std::static_pointer_cast<HTTPTransfer>(shared_from_this()); }

    template <class Work>
    void onNetworkThread(Work work) {
        NetworkThread::shared().run([self = self(), work] { work(*self); });
    }

    void send() {
        if (_isCancelled) return end(cancelled());
        GUri* uri = g_uri_parse(_request.url.absoluteString().c_str(),
                                static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS), nullptr);
        if (uri != nullptr && g_uri_get_host(uri) != nullptr && g_uri_get_host(uri)[0] != '\0') {
            _message.reset(soup_message_new_from_uri("GET", uri));
        }
        if (uri != nullptr) g_uri_unref(uri);
        if (!_message) return end(transferError(TransferFailure::UnsupportedURL, "The URL names no server."));
        _cancellable.reset(g_cancellable_new());
        watchProgress();
        // A new connection for each transfer, because takeApart may read directly from the connection's
        // stream.
        soup_message_add_flags(_message.get(), SOUP_MESSAGE_NEW_CONNECTION);
        soup_message_disable_feature(_message.get(), SOUP_TYPE_CONTENT_DECODER);
        soup_message_headers_replace(soup_message_get_request_headers(_message.get()), "Accept-Encoding",
                                     "gzip");
        soup_session_send_async(_session->connections(), _message.get(), G_PRIORITY_DEFAULT,
                                _cancellable.get(), &HTTPTransfer::onSent, new Self(self()));
    }

    static Self take(gpointer data) {
        const std::unique_ptr<Self> owner(static_cast<Self*>(data));
        return *owner;
    }

    static void onSent(GObject* source, GAsyncResult* result, gpointer data) {
        const Self transfer = take(data);
        GError* error = nullptr;
        transfer->_stream.reset(soup_session_send_finish(SOUP_SESSION(source), result, &error));
        if (!transfer->_stream) return transfer->end(transfer->errorFrom(error));
        transfer->_response = transfer->makeResponse();
        if (transfer->announcesNonsense()) {
            return transfer->end(transferError(TransferFailure::Failed,
                                               "The transfer failed (The length of the content makes no "
                                               "sense)."));
        }
        transfer->takeApart();
        transfer->read();
    }

    // libsoup treats a negative or too large Content-Length as empty content.
    bool announcesNonsense() const {
        SoupMessageHeaders* headers = soup_message_get_response_headers(_message.get());
        const char* announced = soup_message_headers_get_list(headers, "Content-Length");
        if (announced == nullptr || soup_message_headers_get_encoding(headers) == SOUP_ENCODING_CHUNKED) {
            return false;
        }
        std::int64_t length = 0;
        const std::string_view text = announced;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
        return error != std::errc() || end != text.data() + text.size() || length < 0;
    }

    // libsoup takes a connection that ends between two chunks, or within compressed content, for the end of
    // the content. Therefore this class decodes chunks and gzip itself. It reads the chunks from the stream
    // beneath libsoup's own chunk decoder.
    void takeApart() {
        if (isPacked()) _packed = std::make_unique<GzipContent>();
        const auto below = [](GInputStream* stream) -> GInputStream* {
            return G_IS_FILTER_INPUT_STREAM(stream)
                       ? g_filter_input_stream_get_base_stream(G_FILTER_INPUT_STREAM(stream))
                       : nullptr;
        };
        SoupMessageHeaders* headers = soup_message_get_response_headers(_message.get());
        if (soup_message_headers_get_encoding(headers) != SOUP_ENCODING_CHUNKED) return;
        GInputStream* body = below(_stream.get());
        if (body == nullptr || std::string_view(G_OBJECT_TYPE_NAME(body)) != "SoupBodyInputStream") return;
        GInputStream* connection = below(body);
        if (connection == nullptr) return;
        _chunkedStream.reset(G_INPUT_STREAM(g_object_ref(connection)));
        _chunks.emplace();
    }

    void read() {
        noteProgress();
        GInputStream* stream = _chunks ? _chunkedStream.get() : _stream.get();
        g_input_stream_read_async(stream, _buffer.data(), _buffer.size(), G_PRIORITY_DEFAULT,
                                  _cancellable.get(), &HTTPTransfer::onRead, new Self(self()));
    }

    static void onRead(GObject* source, GAsyncResult* result, gpointer data) {
        const Self transfer = take(data);
        GError* error = nullptr;
        const gssize length = g_input_stream_read_finish(G_INPUT_STREAM(source), result, &error);
        if (length < 0) return transfer->end(transfer->errorFrom(error));
        const std::span bytes(transfer->_buffer.data(), static_cast<std::size_t>(length));
        if (auto failed = transfer->_chunks ? transfer->takeChunks(bytes) : transfer->unpack(bytes)) {
            return transfer->end(std::move(failed));
        }
        if (length > 0 && !(transfer->_chunks && transfer->_chunks->isWhole())) return transfer->read();
        transfer->end(transfer->isCut()
                          ? std::optional(transferError(TransferFailure::Failed,
                                                        "The transfer failed (The connection was cut)."))
                          : std::nullopt);
    }

    bool isPacked() const {
        const char* coding = soup_message_headers_get_one(soup_message_get_response_headers(_message.get()),
                                                          "Content-Encoding");
        return coding != nullptr &&
               (g_ascii_strcasecmp(coding, "gzip") == 0 || g_ascii_strcasecmp(coding, "x-gzip") == 0);
    }

    bool isCut() const { return (_chunks && !_chunks->isWhole()) || (_packed && !_packed->isWhole()); }

    std::optional<Error> unpack(std::span<const std::byte> bytes) {
        if (!_packed) return append(bytes);
        return _packed->unpack(bytes, [this](std::span<const std::byte> content) { return append(content); });
    }

    std::optional<Error> takeChunks(std::span<const std::byte> bytes) {
        for (auto content = _chunks->next(bytes); !content.empty(); content = _chunks->next(bytes)) {
            if (auto failed = unpack(content)) return failed;
        }
        if (_chunks->isBroken()) {
            return transferError(TransferFailure::Failed, "The transfer failed (The chunks are damaged).");
        }
        return std::nullopt;
    }

    std::shared_ptr<URLResponse> makeResponse() const {
        SoupMessageHeaders* headers = soup_message_get_response_headers(_message.get());
        const char* type = soup_message_headers_get_content_type(headers, nullptr);
        const bool hasLength =
            soup_message_headers_get_encoding(headers) == SOUP_ENCODING_CONTENT_LENGTH && !isPacked();
        char* text = g_uri_to_string(soup_message_get_uri(_message.get()));
        auto url = URL::fromString(text);
        g_free(text);
        return std::make_shared<HTTPURLResponse>(
            url ? *url : _request.url, type != nullptr ? type : "",
            hasLength ? static_cast<std::int64_t>(soup_message_headers_get_content_length(headers)) : -1,
            static_cast<int>(soup_message_get_status(_message.get())));
    }

    // The timeout limits the time without progress: every event of the connection and every piece of content
    // restarts it. The timeout is divided into TimeoutParts parts and expires when all of them have passed
    // without progress. If the process does not run for a while, only one part is counted, because data that
    // the server sent meanwhile has not been read yet.
    void watchProgress() {
        if (!(_request.timeoutInterval > 0) || !std::isfinite(_request.timeoutInterval)) return;
        // A source that only fires at its ready time. GLib's timeout sources would set a new ready time after
        // each firing.
        static GSourceFuncs atItsDate = {
            nullptr, nullptr, [](GSource*, GSourceFunc fire, gpointer data) { return fire(data); },
            nullptr, nullptr, nullptr};
        _timer = g_source_new(&atItsDate, sizeof(GSource));
        g_source_set_callback(
            _timer,
            [](gpointer data) -> gboolean {
                auto* transfer = static_cast<HTTPTransfer*>(data);
                if (++transfer->_quietParts < TimeoutParts) {
                    transfer->awaitNextPart();
                    return G_SOURCE_CONTINUE;
                }
                transfer->_isTimedOut = true;
                g_cancellable_cancel(transfer->_cancellable.get());
                g_source_set_ready_time(transfer->_timer, -1);
                return G_SOURCE_CONTINUE;
            },
            this, nullptr);
        noteProgress();
        g_source_attach(_timer, NetworkThread::shared().context());
        const auto progress = +[](SoupMessage*, HTTPTransfer* transfer) { transfer->noteProgress(); };
        g_signal_connect(_message.get(), "got-headers", G_CALLBACK(progress), this);
        g_signal_connect(_message.get(), "restarted", G_CALLBACK(progress), this);
        g_signal_connect(_message.get(), "wrote-headers", G_CALLBACK(progress), this);
    }

    void noteProgress() {
        if (_timer == nullptr) return;
        _quietParts = 0;
        awaitNextPart();
    }

    void awaitNextPart() {
        const double part = std::fmin(_request.timeoutInterval, 1e9) * 1e6 / TimeoutParts;
        g_source_set_ready_time(_timer, g_get_monotonic_time() + static_cast<gint64>(part));
    }

    static Error cancelled() {
        return transferError(TransferFailure::Cancelled, "The transfer was cancelled.");
    }

    std::optional<Error> errorFrom(GError* error) const {
        const std::unique_ptr<GError, decltype(&g_error_free)> owner(error, &g_error_free);
        if (_isTimedOut) return transferError(TransferFailure::TimedOut, "The request timed out.");
        if (_isCancelled) return cancelled();
        return transferError(TransferFailure::Failed,
                             std::string("The transfer failed (") +
                                 (error != nullptr ? error->message : "unknown error") + ").");
    }

    void end(std::optional<Error> error) {
        if (_timer != nullptr) {
            g_source_destroy(_timer);
            g_source_unref(_timer);
            _timer = nullptr;
        }
        if (_message) g_signal_handlers_disconnect_by_data(_message.get(), this);
        _chunkedStream.reset();
        _stream.reset();
        _message.reset();
        finish(_response, std::move(error));
    }

    // All members are used only on the network thread.
    Owned<SoupMessage> _message;
    Owned<GCancellable> _cancellable;
    Owned<GInputStream> _stream;
    Owned<GInputStream> _chunkedStream; // the stream beneath _stream; set only together with _chunks
    std::optional<ChunkedBody> _chunks;
    std::unique_ptr<GzipContent> _packed;
    GSource* _timer = nullptr;
    int _quietParts = 0; // parts of the timeout that have passed since the last progress
    std::shared_ptr<URLResponse> _response;
    std::array<std::byte, 65536> _buffer{};
    bool _isTimedOut = false;
    bool _isCancelled = false;
};

} // namespace

std::shared_ptr<URLSessionTask::Transfer>
makeHTTPTransfer(std::shared_ptr<URLSession::Implementation> session, const URLRequest& request,
                 std::unique_ptr<ContentSink> sink) {
    return std::make_shared<HTTPTransfer>(std::move(session), request, std::move(sink));
}

URLSession::Implementation::Implementation() = default;

URLSession::Implementation::~Implementation() {
    if (_connections == nullptr) return;
    NetworkThread::shared().run([connections = _connections] { g_object_unref(connections); });
}

SoupSession* URLSession::Implementation::connections() {
    // The session's own timeout is disabled, because each transfer has its own.
    if (_connections == nullptr) {
        _connections = soup_session_new_with_options("timeout", 0U, "user-agent", product::Name, nullptr);
    }
    return _connections;
}

} // namespace platform

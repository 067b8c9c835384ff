// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/network/Servers.hpp"

#include <arpa/inet.h>
#include <cstdlib>
#include <libsoup/soup.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tonewright::test {
namespace {

constexpr std::size_t Piece = 65536;

// A body that is made while it is sent, so that a large one takes no memory.
struct Body {
    std::size_t length;
    std::size_t sent = 0;
};

void sendPiece(SoupServerMessage* message, Body* body) {
    SoupMessageBody* content = soup_server_message_get_response_body(message);
    if (body->sent == body->length) {
        soup_message_body_complete(content);
        return;
    }
    const std::size_t size = std::min(Piece, body->length - body->sent);
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = HTTPServer::byteAt(body->sent + i);
    body->sent += size;
    soup_message_body_append(content, SOUP_MEMORY_COPY, bytes.data(), size);
}

void sendBody(SoupServerMessage* message, std::size_t length, bool announced) {
    soup_server_message_set_status(message, 200, nullptr);
    SoupMessageHeaders* headers = soup_server_message_get_response_headers(message);
    if (announced) {
        soup_message_headers_set_content_length(headers, static_cast<goffset>(length));
    } else {
        soup_message_headers_set_encoding(headers, SOUP_ENCODING_CHUNKED);
    }
    soup_message_body_set_accumulate(soup_server_message_get_response_body(message), FALSE);
    auto* body = new Body{length};
    g_object_set_data_full(G_OBJECT(message), "body", body,
                           [](gpointer data) { delete static_cast<Body*>(data); });
    sendPiece(message, body);
    g_signal_connect_swapped(
        message, "wrote-chunk",
        G_CALLBACK(+[](Body* sent, SoupServerMessage* source) { sendPiece(source, sent); }), body);
}

void handle(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer) {
    const std::string_view text = path;
    const auto number = [&](std::string_view prefix) {
        return std::strtoul(path + prefix.size(), nullptr, 10);
    };
    const auto answer = [&](unsigned status, const std::string& content) {
        soup_server_message_set_status(message, status, nullptr);
        soup_server_message_set_response(message, "text/plain", SOUP_MEMORY_COPY, content.data(),
                                         content.size());
    };
    if (text == "/text") return answer(200, "hello");
    if (text == "/empty") return answer(200, "");
    if (text.starts_with("/status/")) {
        return answer(static_cast<unsigned>(number("/status/")),
                      "status " + std::to_string(number("/status/")));
    }
    if (text.starts_with("/bytes/")) return sendBody(message, number("/bytes/"), true);
    if (text.starts_with("/chunked/")) return sendBody(message, number("/chunked/"), false);
    if (text == "/loop") return soup_server_message_set_redirect(message, 302, "/loop");
    if (text == "/file") return soup_server_message_set_redirect(message, 302, "file:///etc/passwd");
    if (text.starts_with("/redirect/")) {
        const auto left = number("/redirect/");
        const std::string to = left > 1 ? "/redirect/" + std::to_string(left - 1) : "/text";
        return soup_server_message_set_redirect(message, left % 2 == 0 ? 301 : 307, to.c_str());
    }
    answer(404, "nothing here");
}

} // namespace

HTTPServer::HTTPServer(const std::string& certificate)
    : _context(g_main_context_new())
    , _loop(g_main_loop_new(_context, FALSE)) {
    const bool isSecure = !certificate.empty();
    g_main_context_push_thread_default(_context); // on which the server answers
    SoupServer* server = soup_server_new(nullptr, nullptr);
    if (isSecure) {
        GTlsCertificate* tls = g_tls_certificate_new_from_file(certificate.c_str(), nullptr);
        soup_server_set_tls_certificate(server, tls);
        g_object_unref(tls);
    }
    soup_server_add_handler(server, nullptr, handle, nullptr, nullptr);
    const int options = SOUP_SERVER_LISTEN_IPV4_ONLY | (isSecure ? SOUP_SERVER_LISTEN_HTTPS : 0);
    soup_server_listen_local(server, 0, static_cast<SoupServerListenOptions>(options), nullptr);
    g_main_context_pop_thread_default(_context);
    GSList* uris = soup_server_get_uris(server);
    _base = (isSecure ? "https://127.0.0.1:" : "http://127.0.0.1:") +
            std::to_string(g_uri_get_port(static_cast<GUri*>(uris->data)));
    g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    _thread = std::thread([this, server] {
        g_main_context_push_thread_default(_context);
        g_main_loop_run(_loop);
        soup_server_disconnect(server);
        g_object_unref(server);
        g_main_context_pop_thread_default(_context);
    });
}

HTTPServer::~HTTPServer() {
    GSource* end = g_idle_source_new(); // waits also for a loop that does not run yet
    const auto quit = [](gpointer loop) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
    };
    g_source_set_callback(end, quit, _loop, nullptr);
    g_source_attach(end, _context);
    g_source_unref(end);
    _thread.join();
    g_main_loop_unref(_loop);
    g_main_context_unref(_context);
}

BadServer::BadServer(std::function<void(int)> answer)
    : _answer(std::move(answer))
    , _listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(_listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || ::listen(_listener, 8) != 0 ||
        ::getsockname(_listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        std::abort();
    }
    _port = ntohs(address.sin_port);
    _thread = std::thread([this] { run(); });
}

BadServer::~BadServer() {
    ::shutdown(_listener, SHUT_RDWR);
    _thread.join();
    ::close(_listener);
}

void BadServer::run() {
    while (true) {
        const int connection = ::accept4(_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) return;
        std::string request;
        char byte = 0;
        while (!request.ends_with("\r\n\r\n") && ::recv(connection, &byte, 1, 0) == 1) request += byte;
        if (!request.empty()) _answer(connection);
        ::close(connection);
    }
}

void sendAll(int connection, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t sent = ::send(connection, text.data() + done, text.size() - done, MSG_NOSIGNAL);
        if (sent <= 0) return;
        done += static_cast<std::size_t>(sent);
    }
}

void waitForClose(int connection) {
    char byte = 0;
    while (::recv(connection, &byte, 1, 0) > 0) {
    }
}

} // namespace tonewright::test

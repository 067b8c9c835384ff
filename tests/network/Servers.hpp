// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Servers on loopback. Each has a thread, which serves one connection after the other until the object is
// destroyed.
#pragma once

#include "tests/support/testing.hpp"

#include <arpa/inet.h>
#include <sys/socket.h>

namespace tonewright::test {

/// Sends all of `text` to a connection.
inline void sendAll(int connection, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t sent = ::send(connection, text.data() + done, text.size() - done, MSG_NOSIGNAL);
        if (sent <= 0) return;
        done += static_cast<std::size_t>(sent);
    }
}

/// Waits until the client closes the connection.
inline void waitForClose(int connection) {
    char byte = 0;
    while (::recv(connection, &byte, 1, 0) > 0) {
    }
}

/// Reads the request of each connection and calls `answer` with its path. A request that does not begin with
/// a letter is not read, and its path is empty.
class BadServer : Uncopied {
  public:
    using Answer = std::function<void(int connection, const std::string& path)>;
    explicit BadServer(Answer answer)
        : _answer(std::move(answer)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* place = reinterpret_cast<sockaddr*>(&address);
        if (::bind(_listener, place, size) != 0 || ::listen(_listener, 8) != 0 ||
            ::getsockname(_listener, place, &size) != 0) {
            std::abort();
        }
        _base = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
        _thread = std::thread([this] { run(); });
    }
    ~BadServer() {
        ::shutdown(_listener, SHUT_RDWR);
        _thread.join();
        ::close(_listener);
    }

    [[nodiscard]] std::string url(const std::string& path = "/") const { return _base + path; }

  private:
    void run() {
        for (int connection = 0; (connection = ::accept4(_listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
            std::string request;
            char byte = 0;
            if (::recv(connection, &byte, 1, MSG_PEEK) == 1) {
                while (std::isalpha(byte) != 0 || !request.empty()) {
                    if (request.ends_with("\r\n\r\n") || ::recv(connection, &byte, 1, 0) != 1) break;
                    request += byte;
                }
                const std::size_t path = request.find(' ') + 1;
                _answer(connection, request.substr(path, request.find(' ', path) - path));
            }
            ::close(connection);
        }
    }

    Answer _answer;
    int _listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string _base;
    std::thread _thread;
};

/// Answers like a regular server:
///   /text          200, "hello"                     /status/NNN    status NNN, "status NNN"
///   /bytes/N       200, N bytes, Content-Length     /chunked/N     200, N bytes, chunked
///   /loop          a redirect to itself             /redirect/N    N redirects, then /text
///   /file          a redirect to a file URL         /empty         200, no content
class HTTPServer : public BadServer {
  public:
    HTTPServer()
        : BadServer(reply) {}

    /// Returns the byte at `position` of the bodies of /bytes and /chunked.
    [[nodiscard]] static char byteAt(std::size_t position) {
        return static_cast<char>('a' + position * 7 % 26 + position / 65536 % 2);
    }

  private:
    static void reply(int connection, const std::string& path) {
        const std::size_t slash = std::min(path.size(), path.find('/', 1)); // before the number, if any
        const std::size_t number = std::strtoul(path.substr(slash).erase(0, 1).c_str(), nullptr, 10);
        const auto say = [&](const std::string& status, const std::string& headers, const std::string& body) {
            sendAll(connection,
                    "HTTP/1.1 " + status + " As Said\r\nConnection: close\r\n" + headers + "\r\n" + body);
        };
        const auto sayText = [&](const std::string& status, const std::string& body) {
            say(status, "Content-Length: " + std::to_string(body.size()) + "\r\n", body);
        };
        const auto redirect = [&](const std::string& place) {
            say("302", "Location: " + place + "\r\n", "");
        };
        if (path == "/text") return sayText("200", "hello");
        if (path == "/empty") return sayText("200", "");
        if (path.starts_with("/status/")) return sayText(path.substr(8), "status " + path.substr(8));
        if (path == "/loop") return redirect("/loop");
        if (path == "/file") return redirect("file:///etc/passwd");
        if (path.starts_with("/redirect/")) {
            return redirect(number > 1 ? "/redirect/" + std::to_string(number - 1) : "/text");
        }
        const bool isAnnounced = path.starts_with("/bytes/");
        say("200",
            isAnnounced ? "Content-Length: " + std::to_string(number) + "\r\n"
                        : "Transfer-Encoding: chunked\r\n",
            "");
        for (std::size_t at = 0; at < number; at += 65536) {
            std::string piece(std::min<std::size_t>(65536, number - at), '\0');
            for (std::size_t i = 0; i < piece.size(); ++i) piece[i] = byteAt(at + i);
            if (isAnnounced) {
                sendAll(connection, piece);
            } else {
                std::ostringstream chunk;
                chunk << std::hex << piece.size() << "\r\n" << piece << "\r\n";
                sendAll(connection, chunk.str());
            }
        }
        if (!isAnnounced) sendAll(connection, "0\r\n\r\n");
    }
};

} // namespace tonewright::test

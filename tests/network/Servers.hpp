// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Servers on loopback: a real HTTP server, and one that misbehaves as a test says. Each runs on a thread of
// its own and ends with its object.
#pragma once

#include <functional>
#include <glib.h>
#include <string>
#include <thread>

namespace tonewright::test {

/// A real HTTP server (libsoup's). It answers:
///   /text          200, "hello"                     /status/NNN    that status, "status NNN"
///   /bytes/N       200, N bytes in pieces, announced /chunked/N     the same, not announced
///   /loop          a redirect to itself              /redirect/N    N hops, then /text
///   /file          a redirect to a file URL          /empty         200, nothing
class HTTPServer {
  public:
    /// Begins to listen; with `certificate`, the path of a PEM file, over TLS.
    explicit HTTPServer(const std::string& certificate = "");
    ~HTTPServer();
    HTTPServer(const HTTPServer&) = delete;
    HTTPServer& operator=(const HTTPServer&) = delete;

    /// Returns the URL of `path` on this server.
    [[nodiscard]] std::string url(const std::string& path) const { return _base + path; }
    /// Returns the byte that stands at `position` of the bytes that it sends.
    [[nodiscard]] static char byteAt(std::size_t position) {
        return static_cast<char>('a' + position * 7 % 26 + position / 65536 % 2);
    }

  private:
    GMainContext* _context;
    GMainLoop* _loop;
    std::string _base;
    std::thread _thread;
};

/// Accepts connections, reads each one's request, and leaves the rest to `answer`.
class BadServer {
  public:
    explicit BadServer(std::function<void(int connection)> answer);
    ~BadServer();
    BadServer(const BadServer&) = delete;
    BadServer& operator=(const BadServer&) = delete;

    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(_port) + "/"; }

  private:
    void run();

    std::function<void(int)> _answer;
    int _listener = -1;
    int _port = 0;
    std::thread _thread;
};

/// Writes all of `text` to a connection.
void sendAll(int connection, const std::string& text);
/// Waits until the other side closes the connection.
void waitForClose(int connection);

} // namespace tonewright::test

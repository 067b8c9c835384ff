// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/FileManager.hpp"
#include "platform/network/URLSession.hpp"
#include "tests/network/Servers.hpp"

#include <gio/gio.h>

using namespace platform;
using namespace std::chrono_literals;
using namespace tonewright::test;

namespace {

// The arguments of a completion.
struct Outcome {
    std::string content; // not for files
    std::size_t size = 0;
    bool hasContent = false;
    bool isRight = true; // whether a file's content is what the server sent
    int status = -1;
    std::int64_t announced = -1;
    std::string url, error, location;
    std::thread::id thread = std::this_thread::get_id();

    Outcome(const std::shared_ptr<URLResponse>& response, const std::optional<Error>& failed) {
        if (const auto* http = dynamic_cast<const HTTPURLResponse*>(response.get())) {
            status = http->statusCode();
        }
        if (response) url = response->url().absoluteString(), announced = response->expectedContentLength();
        if (failed) error = failed->localizedDescription();
    }
    void take(const URLData& data) {
        content.assign(reinterpret_cast<const char*>(data.data()), size = data.size());
    }
    void take(const URL& temporary) {
        std::ifstream file(location = temporary.path(), std::ios::binary);
        EXPECT_TRUE(file.good());
        std::string piece(1 << 20, '\0');
        while (file.read(piece.data(), 1 << 20), file.gcount() > 0) {
            const auto count = static_cast<std::size_t>(file.gcount());
            for (std::size_t i = 0; i < count; i += 61) {
                isRight = isRight && piece[i] == HTTPServer::byteAt(size + i);
            }
            size += count;
        }
    }
};

URLRequest request(const std::string& url, double timeout = 60) {
    URLRequest made(*URL::fromString(url));
    made.timeoutInterval = timeout;
    return made;
}

// Creates a task with `make`, which receives a completion; runs the task and returns the completion's
// arguments.
Outcome outcomeOfTask(const auto& make) {
    const auto promise = std::make_shared<std::promise<Outcome>>();
    auto future = promise->get_future();
    const auto task = make([promise](const auto& content, const auto& response, const auto& error) {
        Outcome outcome(response, error);
        outcome.hasContent = content.has_value();
        if (content) outcome.take(*content);
        promise->set_value(outcome);
    });
    task->resume();
    if (future.wait_for(60s) != std::future_status::ready) {
        throw std::runtime_error("the completion never came");
    }
    return future.get();
}

Outcome fetch(const URLRequest& what) {
    const auto session = URLSession::create(URLSessionConfiguration::defaultSessionConfiguration());
    return outcomeOfTask([&](auto completion) { return session->dataTaskWithRequest(what, completion); });
}

Outcome download(const URLRequest& what) {
    return outcomeOfTask([&](auto completion) {
        return URLSession::sharedSession()->downloadTaskWithRequest(what, completion);
    });
}

// Stops all threads of this process for a second.
void standStill() {
    // The second signal is needed if the first one comes before the stop.
    const std::string wake = "(for wait in 1 5; do sleep $wait; kill -CONT " + std::to_string(::getpid()) +
                             "; done) >/dev/null 2>&1 &";
    ASSERT_EQ(std::system(wake.c_str()), 0);
    ::kill(::getpid(), SIGSTOP);
}

// Waits until a folder is empty: a completion's file is removed shortly after the completion has returned.
bool becomesEmpty(const std::string& folder) {
    for (int i = 0; i < 10'000 && !std::filesystem::is_empty(folder); ++i) std::this_thread::sleep_for(1ms);
    return std::filesystem::is_empty(folder);
}

#if defined(TONEWRIGHT_TSAN) // would take half a minute for the full size
constexpr std::size_t Gigabyte = 100'000'000;
#else
constexpr std::size_t Gigabyte = 1'000'000'000;
#endif

// Returns the outcome of a request to a server that sends exactly `answer`.
template <class Transfer>
Outcome outcomeOf(Transfer transfer, const std::string& answer) {
    const BadServer server([&](int connection, auto&) { sendAll(connection, answer); });
    return transfer(request(server.url(), 5));
}

constexpr const char* Ok = "HTTP/1.1 200 OK\r\n";
const std::string Chunked = std::string(Ok) + "Transfer-Encoding: chunked\r\n\r\n";
constexpr std::string_view
    Packed("\x1f\x8b\x08\0\0\0\0\0\x02\xff\xcb\x48\xcd\xc9\xc9\x07\0\x86\xa6\x10\x36\x05\0\0\0",
           25); // "hello"

} // namespace

TEST(URLSession, EveryStatusIsAnAnswer) {
    const HTTPServer server;
    const Outcome text = fetch(request(server.url("/text")));
    EXPECT_EQ(text.content, "hello");
    EXPECT_EQ(text.status, 200);
    EXPECT_EQ(text.announced, 5);
    EXPECT_NE(text.thread, std::this_thread::get_id());
    EXPECT_EQ(text.error, "");
    for (const int status : {404, 500, 418}) {
        const Outcome answer = fetch(request(server.url("/status/" + std::to_string(status))));
        EXPECT_EQ(answer.status, status);
        EXPECT_EQ(answer.content, "status " + std::to_string(status));
    }
    const Outcome empty = download(request(server.url("/empty")));
    EXPECT_TRUE(empty.hasContent && empty.size == 0);
}

TEST(URLSession, FollowsRedirectsAndGivesUpOnLoops) {
    const HTTPServer server;
    const Outcome chain = fetch(request(server.url("/redirect/8")));
    EXPECT_EQ(chain.content, "hello");
    EXPECT_EQ(chain.url, server.url("/text"));
    const Outcome loop = fetch(request(server.url("/loop")));
    EXPECT_FALSE(loop.hasContent);
    EXPECT_NE(loop.error, "");
    const Outcome local = fetch(request(server.url("/file"))); // a server must not redirect to local files
    EXPECT_EQ(local.content.find("root:"), std::string::npos);
}

TEST(URLSession, BodiesOfUnknownLengthAreWhole) {
    const HTTPServer server;
    const Outcome chunked = download(request(server.url("/chunked/3000001")));
    EXPECT_EQ(chunked.size, 3'000'001U);
    EXPECT_TRUE(chunked.isRight);
    EXPECT_EQ(chunked.announced, -1);
    EXPECT_EQ(fetch(request(server.url("/bytes/200000"))).size, 200'000U);
    const std::string packed(Packed);
    const std::string answers[] = {
        Chunked + "5;a=\"b\"\r\nhello\r\n0\r\nTrailer: x\r\n\r\n", Chunked + "2\nhe\n03 \nllo\n0\n\n",
        std::string(Ok) + "\r\nhello", std::string(Ok) + "Content-Encoding: gzip\r\n\r\n" + packed,
        std::string(Ok) + "Content-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n\r\n9\r\n" +
            packed.substr(0, 9) + "\r\n10\r\n" + packed.substr(9) + "\r\n0\r\n\r\n"};
    for (const std::string& answer : answers) {
        const Outcome outcome = outcomeOf(fetch, answer);
        EXPECT_EQ(outcome.content, "hello") << answer << outcome.error;
        EXPECT_EQ(outcome.announced, -1);
    }
}

TEST(URLSession, AGigabyteTakesNoMemory) {
    const HTTPServer server;
    rusage before{}, after{};
    ::getrusage(RUSAGE_SELF, &before);
    const Outcome large = download(request(server.url("/bytes/" + std::to_string(Gigabyte))));
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(large.size, Gigabyte);
    EXPECT_TRUE(large.isRight);
#if !defined(TONEWRIGHT_ASAN) && !defined(TONEWRIGHT_TSAN) // sanitizers keep freed memory
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 50'000) << "kilobytes, the server's included";
#endif
}

TEST(URLSession, ATemporaryFileLivesAsLongAsTheCompletion) {
    const Scratch scratch;
    ::setenv("TMPDIR", scratch.path().c_str(), 1);
    const HTTPServer server;
    const Outcome outcome = download(request(server.url("/text")));
    EXPECT_EQ(outcome.size, 5U);
    EXPECT_TRUE(outcome.location.starts_with("/proc/self/fd/")) << outcome.location; // it has no name
    EXPECT_TRUE(becomesEmpty(scratch.path()));
    ::setenv("TMPDIR", (scratch / "none").c_str(), 1);
    EXPECT_NE(download(request(server.url("/text"))).error.find("couldn't be written"), std::string::npos);
    ::unsetenv("TMPDIR");
}

TEST(URLSession, TheTimeOutIsOneWithoutProgress) {
    BadServer silent([](int connection, auto&) { waitForClose(connection); });
    EXPECT_EQ(fetch(request(silent.url(), 0.3)).error, "The request timed out.");
    BadServer stalled([](int connection, auto&) {
        sendAll(connection, std::string(Ok) + "Content-Length: 100\r\n\r\nhalf");
        waitForClose(connection);
    });
    const Outcome outcome = download(request(stalled.url(), 0.3));
    EXPECT_EQ(outcome.error, "The request timed out.");
    EXPECT_FALSE(outcome.hasContent);
    // Slow, but never silent for as long as the timeout. Time during which this process is stopped does not
    // count.
    BadServer slow([](int connection, auto&) {
        sendAll(connection, std::string(Ok) + "Content-Length: 10\r\n\r\n");
        for (int i = 0; i < 10; ++i) {
            if (i == 5) standStill();
            std::this_thread::sleep_for(100ms);
            sendAll(connection, "x");
        }
    });
    EXPECT_EQ(fetch(request(slow.url(), 0.7)).content, "xxxxxxxxxx");
}

TEST(URLSession, WhatIsCutShortIsAnError) {
    const std::string packed(Packed);
    const std::string answers[] = {
        std::string(Ok) + "Content-Length: 100\r\n\r\nonly this",
        std::string(Ok) + "Content-Length: -5\r\n\r\nhello",
        std::string(Ok) + "Content-Length: 18446744073709551615\r\n\r\nhello",
        std::string("HTTP/1.1 200 OK\r\nContent-Le"),
        std::string(),
        std::string("nonsense\r\n\r\n"),
        Chunked + "5\r\nhello\r\n",
        Chunked + "5\r\nhello\r\n0\r\n",
        Chunked + "5\r\nhello\r\nff",
        Chunked + "5\r\nhello, no size",
        Chunked,
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: close\r\n\r\n5\r\nhello\r\n",
        std::string(Ok) + "Content-Encoding: gzip\r\n\r\n" + packed.substr(0, 20),
        std::string(Ok) + "Content-Encoding: gzip\r\n\r\n" + packed.substr(0, 5)};
    for (const std::string& answer : answers) {
        const Outcome outcome = outcomeOf(download, answer);
        EXPECT_FALSE(outcome.hasContent) << answer;
        EXPECT_NE(outcome.error, "") << answer;
        EXPECT_EQ(outcome.error.find('\n'), std::string::npos);
    }
}

TEST(URLSession, ServersThatCannotBeTrustedOrReachedAreErrors) {
    std::string closedPort;
    {
        const BadServer gone([](int, auto&) {});
        closedPort = gone.url();
    }
    EXPECT_NE(fetch(request(closedPort)).error, "");
    EXPECT_NE(fetch(request("http://no-such-host.invalid/", 10)).error, "");
    const BadServer untrusted([](int connection, auto&) {
        const std::string file = tonewright::test::sourceTree() + "/tests/network/fixtures/untrusted.pem";
        GTlsCertificate* certificate = g_tls_certificate_new_from_file(file.c_str(), nullptr);
        GSocket* socket = g_socket_new_from_fd(::dup(connection), nullptr);
        GSocketConnection* plain = g_socket_connection_factory_create_connection(socket);
        GIOStream* secure = g_tls_server_connection_new(G_IO_STREAM(plain), certificate, nullptr);
        g_tls_connection_handshake(G_TLS_CONNECTION(secure), nullptr, nullptr);
        for (gpointer each : {gpointer{secure}, gpointer{plain}, gpointer{socket}, gpointer{certificate}}) {
            g_object_unref(each);
        }
    });
    const Outcome outcome = fetch(request("https" + untrusted.url("/text").substr(4)));
    EXPECT_FALSE(outcome.hasContent);
    EXPECT_NE(outcome.error.find("certificate"), std::string::npos) << outcome.error;
    for (const char* url : {"gopher://host/", "relative/path", "http:", "http:///x", "mailto:a@b"}) {
        EXPECT_NE(fetch(request(url, 5)).error, "") << url;
    }
}

TEST(URLSession, ReadsFilesWithoutWaiting) {
    const Scratch scratch;
    const auto file = URL::fileURLWithPath(scratch.file("a b", "content")).absoluteString();
    const Outcome outcome = fetch(request(file));
    EXPECT_EQ(outcome.content, "content");
    EXPECT_EQ(outcome.status, -1);
    EXPECT_EQ(outcome.announced, 7);
    EXPECT_EQ(download(request(file)).size, 7U);
    ::mkfifo((scratch / "fifo").c_str(), 0600);
    for (const char* name : {"fifo", "none", ""}) {
        EXPECT_NE(fetch(request("file://" + scratch.path() + "/" + name)).error, "") << name;
    }
    EXPECT_EQ(contentsOfURL(*URL::fromString(file)).value().size(), 7U);
    EXPECT_FALSE(contentsOfURL(*URL::fromString("file:///none")));
}

TEST(URLSession, CancellingCallsTheCompletionOnce) {
    const BadServer silent([](int connection, auto&) { waitForClose(connection); });
    std::promise<long> promise; // setting it twice would throw
    const auto task = URLSession::sharedSession()->dataTaskWithRequest(
        request(silent.url()),
        [&](const auto&, const auto&, const auto& error) { promise.set_value(error ? error->code() : 0); });
    for (int i = 0; i < 2; ++i) task->resume();
    for (int i = 0; i < 2; ++i) task->cancel();
    auto future = promise.get_future();
    ASSERT_EQ(future.wait_for(20s), std::future_status::ready);
    EXPECT_EQ(future.get(), -999);
}

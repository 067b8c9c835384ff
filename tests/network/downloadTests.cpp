// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the scanner's download from a real server into a temporary shared folder.
#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/URL.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"
#include "tests/network/Servers.hpp"

using namespace tonewright;
using platform::URL;
using test::HTTPServer;
using test::Scratch;
using Lines = std::vector<std::string>;

namespace {

class Download : public testing::Test {
  protected:
    void SetUp() override { ::setenv("XDG_DATA_HOME", scratch.path().c_str(), 1); }
    void TearDown() override { ::unsetenv("XDG_DATA_HOME"); }

    // Downloads `url` and returns the printed lines.
    Lines download(const std::string& url) {
        std::atomic<bool> ended{false};
        test::CapturedOutput output;
        auto loop = platform::RunLoop::current();
        FileEnumerator::startDownload(*URL::fromString(url), {nullptr, [&](DownloadOutcome how) {
                                                                  outcome = how;
                                                                  ended = true;
                                                                  loop.wakeUp();
                                                              }});
        EXPECT_EQ(output.lines(), Lines{"Download von '" + url + "' wurde gestartet."});
        EXPECT_TRUE(loop.runUntil([&] { return ended.load(); }, 60));
        return output.take();
    }

    Scratch scratch;
    std::string container = scratch / "group.tonewright.example";
    std::string destination = container + "/download.zip";
    std::string destinationURL = URL::fileURLWithPath(destination, false).absoluteString();
    DownloadOutcome outcome = DownloadOutcome::Failed;
};

const std::string Last = "Asynchroner Download...";

} // namespace

TEST_F(Download, ReplacesAFileAndSaysEveryStep) {
    const HTTPServer server;
    const std::string url = server.url("/text");
    Lines lines = download(url);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_TRUE(lines[1].starts_with("Die Datei (" + url + ") wurde als 'file:///")) << lines[1];
    EXPECT_TRUE(lines[1].ends_with("' heruntergeladen mit Status Code: 200")) << lines[1];
    EXPECT_EQ(lines[2], "Temporäre Download Datei kopiert nach: '" + destinationURL + "'.");
    EXPECT_EQ(lines[3], "Download nach '" + destination + "' war erfolgreich.");
    EXPECT_EQ(lines[4], Last);
    EXPECT_EQ(outcome, DownloadOutcome::Stored);
    EXPECT_EQ(test::contentOf(destination), "hello");

    lines = download(server.url("/status/404"));
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_TRUE(lines[1].ends_with("mit Status Code: 404"));
    EXPECT_EQ(lines[2], "Eine Datei mit diesem Namen existiert bereits, die Datei wird entfernt...");
    EXPECT_EQ(test::contentOf(destination), "status 404");

    std::filesystem::remove(destination);
    scratch.file("group.tonewright.example/download.zip/a/b"); // a folder of that name is also replaced
    EXPECT_EQ(download(url).size(), 6U);
    EXPECT_EQ(test::contentOf(destination), "hello");
}

TEST_F(Download, FailuresAreOneLineEach) {
    test::BadServer cut([](int connection, auto&) {
        test::sendAll(connection, "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\npart");
    });
    Lines lines = download(cut.url());
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[1].starts_with("FEHLER: Während des Downloads der Datei (" + cut.url() +
                                     ") ist folgender Fehler aufgetreten: %@ The transfer failed ("))
        << lines[1];
    EXPECT_EQ(lines[2], Last);
    EXPECT_FALSE(std::filesystem::exists(destination));
    EXPECT_EQ(outcome, DownloadOutcome::Failed);

    lines = download(URL::fileURLWithPath(scratch.file("local")).absoluteString());
    EXPECT_EQ(lines.size(), 2U); // no further line, no copy
    EXPECT_EQ(lines.back(), Last);
    EXPECT_EQ(outcome, DownloadOutcome::NotStored);

    const HTTPServer server;
    std::filesystem::remove_all(container);
    scratch.file("group.tonewright.example", "a file where the folder should be");
    lines = download(server.url("/text"));
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_TRUE(lines[2].starts_with("FEHLER: Die Datei konnte nicht in das Zielverzeichnis '" +
                                     destinationURL + "' kopiert werden. Error Domain=POSIX Code=20 \""))
        << lines[2];
    EXPECT_EQ(outcome, DownloadOutcome::Failed);
}

TEST_F(Download, WithoutASharedFolderIsFatal) {
    EXPECT_DEATH(
        {
            ::unsetenv("XDG_DATA_HOME");
            ::setenv("HOME", "/", 1);
            FileEnumerator().downloadFile(*URL::fromString("http://127.0.0.1:1/"));
        },
        "^Unexpectedly found nil while implicitly unwrapping an Optional value");
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The scanner's download from a real server into a shared folder of the test's own.
#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/URL.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"
#include "tests/network/Servers.hpp"
#include "tests/support/CapturedOutput.hpp"
#include "tests/support/Scratch.hpp"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>
#include <spawn.h>
#include <sys/wait.h>

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

    // Downloads and gives the lines.
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

// A line with the temporary file's name taken out.
std::string withoutName(std::string line) {
    const std::size_t begin = line.find("als '") + 5;
    return line.replace(begin, line.find("' heruntergeladen") - begin, "");
}

} // namespace

TEST_F(Download, ReplacesAFileAndSaysEveryStep) {
    const HTTPServer server;
    const std::string url = server.url("/text");
    Lines lines = download(url);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_NE(lines[1].find("als 'file:///"), std::string::npos);
    EXPECT_EQ(withoutName(lines[1]),
              "Die Datei (" + url + ") wurde als '' heruntergeladen mit Status Code: 200");
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
    scratch.file("group.tonewright.example/download.zip/a/b"); // a folder of that name goes as well
    EXPECT_EQ(download(url).size(), 6U);
    EXPECT_EQ(test::contentOf(destination), "hello");
}

TEST_F(Download, FailuresAreOneLineEach) {
    test::BadServer cut([](int connection) {
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
    EXPECT_EQ(lines.size(), 2U); // no line, no copy
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

TEST(KilledDownload, LeavesTheOldFileOrNoneOrTheWholeNew) {
#ifdef TONEWRIGHT_TSAN
    GTEST_SKIP() << "a download under the detector takes longer than the time it is given here";
#endif
    constexpr int Rounds = 10;
    constexpr int AtOnce = 20;
    constexpr std::size_t Size = 1'500'000;
    const char* const build = std::getenv("TONEWRIGHT_BUILD_DIR");
    ASSERT_NE(build, nullptr);
    const std::string program = std::string(build) + "/bin/tonewright-files";
    ASSERT_TRUE(std::filesystem::exists(program));
    std::string whole(Size, ' ');
    for (std::size_t i = 0; i < Size; ++i) whole[i] = HTTPServer::byteAt(i);
    std::mt19937 random(5);
    int olds = 0;
    int news = 0;
    for (int round = 0; round < Rounds; ++round) {
        const HTTPServer server;
        const std::string url = server.url("/slow/" + std::to_string(Size));
        const Scratch scratch;
        struct Run {
            pid_t process;
            std::chrono::steady_clock::time_point end;
            std::string folder;
        };
        std::vector<Run> runs;
        for (int i = 0; i < AtOnce; ++i) {
            const std::string folder = scratch.folder("run" + std::to_string(i));
            scratch.file("run" + std::to_string(i) + "/group.tonewright.example/download.zip",
                         "the old file");
            scratch.folder("run" + std::to_string(i) + "/temporary");
            const std::string data = "XDG_DATA_HOME=" + folder;
            const std::string temporary = "TMPDIR=" + folder + "/temporary";
            char* environment[] = {const_cast<char*>(data.c_str()), const_cast<char*>(temporary.c_str()),
                                   nullptr};
            char* arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>("download"),
                                 const_cast<char*>(url.c_str()), const_cast<char*>("--output=/dev/null"),
                                 nullptr};
            pid_t process = 0;
            ASSERT_EQ(::posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environment), 0);
            // The transfer begins a second later and takes about a quarter of one.
            const auto wait = std::chrono::milliseconds(900 + random() % 500);
            runs.push_back({process, std::chrono::steady_clock::now() + wait, folder});
        }
        std::sort(runs.begin(), runs.end(), [](const Run& a, const Run& b) { return a.end < b.end; });
        for (const Run& run : runs) {
            std::this_thread::sleep_until(run.end);
            ::kill(run.process, SIGKILL);
            ::waitpid(run.process, nullptr, 0);
            const std::string folder = run.folder + "/group.tonewright.example";
            const std::string content = test::contentOf(folder + "/download.zip");
            const bool isThere = std::filesystem::exists(folder + "/download.zip");
            EXPECT_TRUE(!isThere || content == "the old file" || content == whole) << content.size();
            olds += content == "the old file" ? 1 : 0;
            news += isThere && content.size() == Size ? 1 : 0;
            for (const auto& entry : std::filesystem::directory_iterator(folder))
                EXPECT_EQ(entry.path().filename(), "download.zip");
        }
    }
    EXPECT_GT(olds, 0); // some were killed before, some after
    EXPECT_GT(news, 0);
}

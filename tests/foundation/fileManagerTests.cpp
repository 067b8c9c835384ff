// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/FileManager.hpp"
#include "tests/support/child.hpp"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/xattr.h>

// Replaces the C library's function: a directory named "damaged" returns some of its names and then fails.
extern "C" ssize_t getdents64(int directory, void* buffer, std::size_t size) {
    char path[4096] = {};
    (void)::readlink(("/proc/self/fd/" + std::to_string(directory)).c_str(), path, sizeof path - 1);
    if (std::string_view(path).ends_with("/damaged")) {
        if (::lseek(directory, 0, SEEK_CUR) != 0) {
            errno = EIO;
            return -1;
        }
        size = 1024;
    }
    return ::syscall(SYS_getdents64, directory, buffer, size);
}

using namespace platform;
using namespace tonewright::test;

namespace fs = std::filesystem;

namespace {

// Allows everything except `forbidden`, calls `meanwhile`, and records the questions.
class Answers : public FileManagerDelegate {
  public:
    std::vector<std::string> asked;
    std::string forbidden = "?nothing?";
    bool proceeds = false;
    std::function<void(const std::string& asked)> meanwhile = [](auto&) {};

    bool fileManagerShouldRemoveItemAtPath(FileManager&, const std::string& path) override {
        return may(path);
    }
    bool fileManagerShouldCopyItemAtPath(FileManager&, const std::string& path,
                                         const std::string& to) override {
        return may(path + " > " + to);
    }
    bool fileManagerShouldMoveItemAtPath(FileManager&, const std::string& path, const std::string&) override {
        return may(path);
    }
    bool fileManagerShouldLinkItemAtURL(FileManager&, const URL& url, const URL&) override {
        return may(url.path());
    }
    bool fileManagerShouldProceedAfterErrorRemovingItemAtPath(FileManager&, const Error& error,
                                                              const std::string&) override {
        return goOn(error);
    }
    bool fileManagerShouldProceedAfterErrorCopyingItemAtPath(FileManager&, const Error& error,
                                                             const std::string&,
                                                             const std::string&) override {
        return goOn(error);
    }

  private:
    bool may(const std::string& what) {
        asked.push_back(what);
        meanwhile(what);
        return what.find(forbidden) == std::string::npos;
    }
    bool goOn(const Error& error) {
        asked.push_back(error.localizedDescription());
        return proceeds;
    }
};

} // namespace

TEST(FileManager, AttributesDoNotFollowALinkTheQuestionsDo) {
    const Scratch scratch;
    scratch.file("file", "12345");
    (void)::symlink("file", (scratch / "link").c_str());
    (void)::symlink("nowhere", (scratch / "dangling").c_str());
    const FileManager manager;
    const auto link = manager.attributesOfItemAtPath(scratch / "link");
    ASSERT_TRUE(link);
    EXPECT_EQ(link.value().value(FileAttributeKey::NSFileType),
              FileAttribute(std::string("NSFileTypeSymbolicLink")));
    EXPECT_TRUE(manager.isReadableFileAtPath(scratch / "link"));
    EXPECT_FALSE(manager.fileExistsAtPath(scratch / "dangling"));
    EXPECT_TRUE(manager.isDeletableFileAtPath(scratch / "dangling"));
    EXPECT_FALSE(manager.isDeletableFileAtPath(scratch / "none"));
    EXPECT_FALSE(manager.isDeletableFileAtPath("/"));
    EXPECT_FALSE(manager.fileExistsAtPath(""));
    EXPECT_FALSE(manager.fileExistsAtPath(std::string("/tmp\0x", 6)));
    const auto file = manager.attributesOfItemAtPath(scratch / "file");
    EXPECT_EQ(file.value().size(), NSNumber(5));
    EXPECT_GE(file.value().count(), FileAttributeKeyCount - 2); // a user or group can lack a name
    struct stat status {};
    ::stat((scratch / "file").c_str(), &status);
    EXPECT_EQ(file.value().systemFileNumber(), NSNumber(status.st_ino));
    EXPECT_EQ(file.value().modificationDate(),
              (Date{status.st_mtim.tv_sec, static_cast<std::uint32_t>(status.st_mtim.tv_nsec)}));
}

TEST(FileManager, RemovesWholeTreesAndNothingBehindALink) {
    const Scratch scratch;
    scratch.file("outside/kept");
    scratch.file("tree/a/b/c");
    (void)::symlink("../outside", (scratch / "tree/link").c_str());
    (void)::symlink((scratch / "outside").c_str(), (scratch / "tree/a/absolute").c_str());
    (void)::mkfifo((scratch / "tree/fifo").c_str(), 0600);
    (void)::symlink("tree", (scratch / "toTree").c_str());
    FileManager manager;
    EXPECT_EQ(manager.removeItemAtPath(scratch / "toTree/"), std::nullopt);
    EXPECT_TRUE(fs::exists(scratch / "tree/fifo"));
    EXPECT_EQ(manager.removeItemAtURL(URL::fileURLWithPath(scratch / "tree")), std::nullopt);
    EXPECT_FALSE(fs::exists(scratch / "tree"));
    EXPECT_TRUE(fs::exists(scratch / "outside/kept"));

    const auto error = manager.removeItemAtPath(scratch / "no\nsuch\x1b");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(), "Error Domain=POSIX Code=2 \"" + error->localizedDescription() + "\"");
    EXPECT_EQ(error->localizedDescription(),
              "The file 'no\\nsuch\\x1B' couldn't be removed (No such file or directory).");
    for (const char* bad : {"/", ".", "..", ""}) EXPECT_TRUE(manager.removeItemAtPath(bad)) << bad;
    EXPECT_TRUE(manager.removeItemAtURL(*URL::fromString("http://example/")));
}

TEST(FileManager, ADelegateMayLeaveInsideAQuestion) {
    const Scratch scratch;
    for (const char* name : {"folder/a", "folder/b"}) scratch.file(name);
    FileManager manager;
    Answers answers;
    answers.meanwhile = [&](auto&) { manager.setDelegate(nullptr); };
    manager.setDelegate(&answers);
    EXPECT_FALSE(manager.removeItemAtPath(scratch / "folder"));
    EXPECT_EQ(answers.asked.size(), 1U);
    EXPECT_FALSE(fs::exists(scratch / "folder"));
}

TEST(FileManager, AsksItsDelegateAboutEveryItem) {
    const Scratch scratch;
    scratch.file("tree/a/kept");
    scratch.file("tree/b");
    FileManager manager;
    Answers answers;
    manager.setDelegate(&answers);
    answers.forbidden = "kept";
    EXPECT_EQ(manager.removeItemAtPath(scratch / "tree"), std::nullopt);
    EXPECT_EQ(answers.asked, (std::vector<std::string>{scratch / "tree", scratch / "tree/a",
                                                       scratch / "tree/a/kept", scratch / "tree/b"}));
    EXPECT_TRUE(fs::exists(scratch / "tree/a/kept"));
    EXPECT_FALSE(fs::exists(scratch / "tree/b"));

    answers.asked.clear();
    EXPECT_EQ(manager.copyItemAtPath(scratch / "tree", scratch / "copy"), std::nullopt);
    EXPECT_EQ(answers.asked.size(), 3U);
    EXPECT_EQ(answers.asked[1], (scratch / "tree/a") + " > " + (scratch / "copy/a"));
    EXPECT_TRUE(fs::is_directory(scratch / "copy/a"));
    EXPECT_FALSE(fs::exists(scratch / "copy/a/kept"));

    EXPECT_EQ(manager.linkItemAtURL(URL::fileURLWithPath(scratch / "tree"),
                                    URL::fileURLWithPath(scratch / "linked")),
              std::nullopt);
    answers.forbidden = "tree";
    EXPECT_EQ(manager.moveItemAtPath(scratch / "tree", scratch / "moved"), std::nullopt);
    EXPECT_TRUE(fs::exists(scratch / "tree"));

    answers.forbidden = "?nothing?";
    answers.asked.clear();
    EXPECT_TRUE(manager.removeItemAtPath(scratch / "tree/none/x"));
    EXPECT_TRUE(answers.asked.empty());
    scratch.file("there");
    EXPECT_TRUE(manager.copyItemAtPath(scratch / "tree/a/kept", scratch / "there"));
    EXPECT_EQ(answers.asked.back(), "The file 'kept' couldn't be copied (File exists).");
    answers.proceeds = true;
    EXPECT_EQ(manager.copyItemAtPath(scratch / "tree/a/kept", scratch / "there"), std::nullopt);
    manager.setDelegate(nullptr);
}

TEST(FileManager, CopiesEveryKindOfItem) {
    const Scratch scratch;
    const std::string content(300'000, 'x');
    const std::string file = scratch.file("tree/file", content);
    ::chmod(file.c_str(), 0640);
    const timespec times[2] = {{0, UTIME_OMIT}, {1'000'000'000, 42}};
    ::utimensat(AT_FDCWD, file.c_str(), times, 0);
    const bool hasXattr = ::setxattr(file.c_str(), "user.note", "n", 1, 0) == 0;
    scratch.file("tree/empty");
    const std::string sparse = scratch.file("tree/sparse", "begin");
    ASSERT_EQ(::truncate(sparse.c_str(), 50'000'000), 0);
    (void)::symlink("../elsewhere", (scratch / "tree/link").c_str());
    (void)::mkfifo((scratch / "tree/fifo").c_str(), 0600);
    ::chmod(scratch.folder("tree/locked").c_str(), 0555);
    FileManager manager;
    ASSERT_EQ(manager.copyItemAtPath(scratch / "tree", scratch / "copy"), std::nullopt);
    EXPECT_EQ(contentOf(scratch / "copy/file"), content);
    struct stat status {};
    ::stat((scratch / "copy/file").c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'000'000'000);
    if (hasXattr) {
        EXPECT_EQ(::getxattr((scratch / "copy/file").c_str(), "user.note", nullptr, 0), 1);
    }
    ::stat((scratch / "copy/sparse").c_str(), &status);
    EXPECT_EQ(status.st_size, 50'000'000);
    EXPECT_LT(status.st_blocks, 2000);
    EXPECT_EQ(contentOf(scratch / "copy/sparse").substr(0, 6), std::string("begin\0", 6));
    EXPECT_EQ(fs::read_symlink(scratch / "copy/link"), "../elsewhere");
    EXPECT_TRUE(fs::is_fifo(scratch / "copy/fifo"));
    EXPECT_EQ(fs::status(scratch / "copy/locked").permissions(), fs::perms(0555));
    EXPECT_EQ(fs::file_size(scratch / "copy/empty"), 0U);

    EXPECT_TRUE(manager.copyItemAtPath(scratch / "tree", scratch / "copy"));
    EXPECT_TRUE(manager.copyItemAtPath(scratch / "tree", scratch / "tree/inside"));
    EXPECT_FALSE(fs::exists(scratch / "tree/inside"));
    EXPECT_TRUE(manager.copyItemAtPath(scratch / "tree/file", scratch / "none/file"));
    EXPECT_EQ(manager.copyItemAtPath("/proc/self/status", scratch / "status"), std::nullopt);
    EXPECT_GT(fs::file_size(scratch / "status"), 100U);
    EXPECT_EQ(manager.moveItemAtPath(scratch / "copy", scratch / "moved"), std::nullopt);
    EXPECT_TRUE(manager.moveItemAtPath(scratch / "tree", scratch / "moved"));
    EXPECT_EQ(manager.linkItemAtPath(scratch / "tree/file", scratch / "hard"), std::nullopt);
    EXPECT_EQ(fs::hard_link_count(scratch / "hard"), 2U);
}

TEST(FileManager, AFullDiskOrAFileSizeLimitLeavesNoPart) {
    const Scratch scratch;
    scratch.file("large", std::string(3'000'000, 'x'));
    scratch.folder("disk");
    holdsInChild([&] {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1'000'000, 1'000'000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        EXPECT_TRUE(FileManager().copyItemAtPath(scratch / "large", scratch / "part"));
        EXPECT_FALSE(fs::exists(scratch / "part"));
    });
    holdsInChild([&] {
        const std::string disk = scratch / "disk";
        mountInChild("none", disk, "tmpfs", 0, "size=1m");
        const auto error = FileManager().copyItemAtPath(scratch / "large", disk + "/copy");
        EXPECT_TRUE(error && error->code() == ENOSPC);
        scratch.file("tree/a", "small");
        fs::rename(scratch / "large", scratch / "tree/large");
        EXPECT_TRUE(FileManager().copyItemAtPath(scratch / "tree", disk + "/tree"));
        EXPECT_TRUE(fs::is_empty(disk));
        ::mount("none", disk.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr);
        const auto readOnly = FileManager().copyItemAtPath(scratch / "tree/a", disk + "/a");
        EXPECT_TRUE(readOnly && readOnly->code() == EROFS);
    });
}

TEST(FileManager, AFailedCopyTakesAwayWhatItMadeAndNothingElse) {
    const Scratch scratch;
    for (const char* name : {"tree/a/file", "tree/b/file", "tree/c", "tree/z"}) scratch.file(name);
    ::chmod((scratch / "tree/b").c_str(), 0555); // finished and closed before the copy fails
    FileManager manager;
    // Another directory replaces the copy while it is being made, and a file is added to the copy.
    Answers answers;
    answers.meanwhile = [&](const std::string& what) {
        if (what.find("/z > ") == std::string::npos) return;
        fs::rename(scratch / "copy", scratch / "aside");
        for (const char* name : {"copy/a/unrelated", "aside/a/added", "aside/z"}) scratch.file(name);
    };
    manager.setDelegate(&answers);
    const auto error = manager.copyItemAtPath(scratch / "tree", scratch / "copy");
    manager.setDelegate(nullptr);
    ::chmod((scratch / "tree/b").c_str(), 0755);
    EXPECT_TRUE(error && error->code() == EEXIST);
    EXPECT_TRUE(fs::exists(scratch / "copy/a/unrelated"));
    EXPECT_EQ(manager.subpathsAtPath(scratch / "aside"), (std::vector<std::string>{"a", "a/added", "z"}));
}

TEST(FileManager, WhatIsMountedBelowAnItemIsNeitherRemovedNorCopied) {
    const Scratch scratch;
    scratch.file("kept/file");
    for (const char* folder : {"tmpfs/on", "bound/on"}) scratch.folder(folder);
    holdsInChild([&] {
        mountInChild("none", scratch / "tmpfs/on", "tmpfs", 0);
        mountInChild((scratch / "kept").c_str(), scratch / "bound/on", nullptr,
                     MS_BIND); // on the same device
        scratch.file("tmpfs/on/file");
        FileManager manager;
        for (const std::string name : {"tmpfs", "bound"}) {
            for (const std::string& item : {scratch / name, scratch / name + "/on"}) {
                const auto error = manager.removeItemAtPath(item);
                EXPECT_TRUE(error && error->localizedDescription() ==
                                         "The file 'on' couldn't be removed (Device or resource busy).");
            }
            const auto error = manager.copyItemAtPath(scratch / name, scratch / "copy");
            EXPECT_TRUE(error && error->code() == EXDEV);
            EXPECT_FALSE(fs::exists(scratch / "copy"));
            EXPECT_EQ(manager.copyItemAtPath(scratch / name + "/on", scratch / name + "Copy"), std::nullopt);
            EXPECT_TRUE(fs::exists(scratch / name + "/on/file") && fs::exists(scratch / name + "Copy/file"));
        }
    });
}

TEST(FileManager, ADirectoryThatFailsWhileItIsReadIsAnError) {
    const Scratch scratch;
    for (int i = 0; i < 100; ++i) scratch.file("tree/damaged/" + std::to_string(i));
    FileManager manager;
    const auto enumerator = manager.enumeratorAtPath(scratch / "tree");
    std::size_t seen = 0;
    while (enumerator->nextObject()) ++seen;
    EXPECT_TRUE(seen > 10 && seen < 100) << seen;
    ASSERT_EQ(enumerator->readErrors().size(), 1U);
    EXPECT_EQ(enumerator->readErrors()[0].localizedDescription(),
              "The directory '" + scratch / "tree/damaged" +
                  "' couldn't be read to its end (Input/output error).");
    EXPECT_EQ(manager.subpathsOfDirectoryAtPath(scratch / "tree").error().code(), EIO);
    const auto copying = manager.copyItemAtPath(scratch / "tree", scratch / "copy");
    EXPECT_TRUE(copying && copying->code() == EIO);
    EXPECT_FALSE(fs::exists(scratch / "copy"));
    const auto removing = manager.removeItemAtPath(scratch / "tree");
    EXPECT_TRUE(removing && removing->code() == EIO);
    holdsInChild([&] {
        mountInChild("none", scratch.folder("disk"), "tmpfs", 0);
        const auto moving = manager.moveItemAtPath(scratch / "tree", scratch / "disk/tree");
        EXPECT_TRUE(moving && moving->code() == EIO);
        EXPECT_TRUE(fs::is_empty(scratch / "disk"));
    });
    fs::rename(scratch / "tree/damaged", scratch / "tree/whole"); // no item was removed
    EXPECT_EQ(manager.contentsOfDirectoryAtPath(scratch / "tree/whole").value().size(), 100U);
}

TEST(FileManager, SaysWhyItCannotList) {
    const Scratch scratch;
    const FileManager manager;
    EXPECT_EQ(manager.contentsOfDirectoryAtPath(scratch.file("a")).error().code(), ENOTDIR);
    EXPECT_EQ(manager.contentsOfDirectoryAtPath(scratch.path()).value(), std::vector<std::string>{"a"});
    EXPECT_EQ(manager.subpathsOfDirectoryAtPath(scratch / "none").error().code(), ENOENT);
}

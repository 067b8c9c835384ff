// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/console.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"
#include "tests/files/nodes.hpp"
#include "tests/support/child.hpp"

#include <sys/sysmacros.h>

using namespace tonewright;
using tonewright::test::CapturedOutput;
using tonewright::test::Scratch;

namespace fs = std::filesystem;

namespace {

using test::Lines;
const std::string End = "WARNUNG:  Unbekannter Typ des Dateiobjektes oder <nil>.";

constexpr uid_t User = 12345;

// A scanner. When the test ends, its tree is taken apart and the current directory is restored.
struct Scanner {
    FileEnumerator enumerator;
    CapturedOutput output;
    fs::path start = fs::current_path();
    /// Scans and returns the printed lines.
    Lines scan(const std::string& path) {
        enumerator.enumerate(path);
        return output.take();
    }
    const Folder& root() const { return *enumerator.fileTree->root; }
    ~Scanner() {
        test::takeApart(*enumerator.fileTree);
        std::error_code ignored; // fails for a user without access
        fs::current_path(start, ignored);
    }
};

Lines childrenOf(const Folder& folder) {
    Lines names;
    for (const auto& child : folder.children) names.push_back(child->getFileName());
    return names;
}

std::shared_ptr<File> child(const Folder& folder, std::string_view name) {
    for (const auto& node : folder.children) {
        if (node->getFileName() == name) return node;
    }
    return nullptr;
}

} // namespace

TEST(Scanner, BuildsTheTreeAndDeletesLitter) {
    const Scratch scratch;
    scratch.file("a/x.txt", "12345");
    scratch.file("b.txt");
    scratch.file(".DS_Store");
    scratch.file("a/my.DS_Store.bak");
    scratch.file("a/__MACOSX/deep/._x");
    scratch.file("c__MACOSX__/inside");
    scratch.file("c.ds_store");
    const Scratch outside;
    outside.file("kept/file");
    fs::create_directory_symlink(outside / "kept", scratch / "link.DS_Store");
    Scanner scanner;
    EXPECT_EQ(scanner.scan(scratch.path()), Lines{End});
    const FileTree& tree = *scanner.enumerator.fileTree;
    EXPECT_TRUE(tree.filelist.empty());
    EXPECT_EQ(tree.basePath, fs::canonical(scratch.path()));
    EXPECT_EQ(childrenOf(*tree.root), (Lines{"a", "b.txt", "c.ds_store"}));
    const auto a = child(*tree.root, "a");
    EXPECT_EQ(childrenOf(*a->asFolder()), Lines{"x.txt"});
    EXPECT_TRUE(a->isDirectory() && a->exists() && !a->_expanded());
    const auto& x = a->asFolder()->children[0];
    EXPECT_EQ(x->subpath(), "a/x.txt");
    EXPECT_EQ(x->rootpath(), scratch.path());
    EXPECT_EQ(x->getFileSizeFormatted(), "5 bytes");
    EXPECT_EQ(x->uid(), x->getSystemFileNumber());
    EXPECT_TRUE(tree.root->_expanded() && tree.root->isDirectory() && tree.root->_indent() == 0);
    for (const char* gone :
         {".DS_Store", "a/my.DS_Store.bak", "a/__MACOSX", "c__MACOSX__", "link.DS_Store"}) {
        EXPECT_FALSE(fs::exists(fs::symlink_status(scratch / gone))) << gone;
    }
    EXPECT_TRUE(fs::exists(outside / "kept/file")); // the link was deleted, not its target
    EXPECT_TRUE(fs::exists(scratch / "c.ds_store"));
}

TEST(Scanner, ReportsWhatItCannotDelete) {
    const Scratch scratch;
    scratch.file("locked/__MACOSX/x");
    scratch.file("locked/y");
    ::chmod(scratch.path().c_str(), 0755);
    test::holdsInChildAs(User, User, {}, [&] {
        Scanner scanner;
        const Lines lines = scanner.scan(scratch.path());
        ASSERT_EQ(lines.size(), 3U); // one line for the folder and one for its content
        EXPECT_EQ(lines[0], "The file 'x' couldn't be removed (Permission denied).");
        EXPECT_EQ(lines[1], "The file 'x' couldn't be removed (Permission denied).");
        EXPECT_EQ(lines[2], End);
        EXPECT_EQ(childrenOf(*child(scanner.root(), "locked")->asFolder()), Lines{"y"});
    });
}

namespace {

// Replaces a directory by a link when the scanner asks about the first item in it.
struct Exchange : platform::FileManagerDelegate {
    std::string directory, target;
    bool fileManagerShouldRemoveItemAtURL(platform::FileManager&, const platform::URL&) override {
        if (!fs::is_symlink(directory)) {
            fs::rename(directory, directory + "-moved");
            fs::create_directory_symlink(target, directory);
        }
        return true;
    }
};

} // namespace

TEST(Scanner, DeletesNothingBehindALinkThatADirectoryBecame) {
    const Scratch scratch, outside;
    for (const char* name : {"d/1.DS_Store", "d/2__MACOSX/inside", "d/3.DS_Store", "d/x"}) {
        scratch.file(name);
        outside.file(name);
    }
    Exchange exchange;
    exchange.directory = scratch / "d";
    exchange.target = outside / "d";
    Scanner scanner;
    platform::FileManager::defaultManager().setDelegate(&exchange);
    EXPECT_EQ(scanner.scan(scratch.path()), Lines{End});
    platform::FileManager::defaultManager().setDelegate(nullptr);
    EXPECT_EQ(scanner.enumerator.fileManager.subpathsAtPath(outside / "d")->size(), 5U);
    EXPECT_EQ(scanner.enumerator.fileManager.subpathsAtPath(scratch / "d-moved"), Lines{"x"});
}

TEST(Scanner, HostileNamesAndKindsPassUnchanged) {
    const Scratch scratch;
    const std::string longName(255, 'x');
    const std::string hostile[] = {"new\nline", "quote'\"<&>", "\x01\x7f", "\xff\xfe",
                                   "%s%n",      " ",           "-",        longName};
    for (const std::string& name : hostile) scratch.file(name, "abc");
    ::mkfifo((scratch / "fifo").c_str(), 0600);
    ASSERT_EQ(::mknod((scratch / "socket").c_str(), S_IFSOCK | 0600, 0), 0);
    const bool hasDevice = ::mknod((scratch / "null").c_str(), S_IFCHR | 0600, ::makedev(1, 3)) == 0;
    fs::create_directory_symlink("..", scratch / "up");
    fs::create_symlink("circle", scratch / "circle");
    fs::create_symlink("nowhere", scratch / "dangling");
    Scanner scanner;
    EXPECT_EQ(scanner.scan(scratch.path()), Lines{End});
    const Folder& root = scanner.root();
    EXPECT_EQ(root.children.size(), std::size(hostile) + (hasDevice ? 6 : 5));
    for (const std::string& name : hostile) ASSERT_TRUE(child(root, name)) << name;
    EXPECT_TRUE(child(root, "up")->isDirectory());
    EXPECT_TRUE(child(root, "up")->asFolder()->children.empty());
    EXPECT_FALSE(child(root, "dangling")->exists());
    EXPECT_EQ(child(root, "dangling")->getFileSize(), platform::NSNumber(7));
    EXPECT_NE(scanner.enumerator.fileTree->xml().find("<file name='new\nline' size='3 bytes'"),
              std::string::npos);
}

TEST(Scanner, AttributesThatCannotBeReadAreReportedOnce) {
    const Scratch scratch;
    scratch.file("closed/one");
    scratch.file("secret/two");
    ::chmod((scratch / "closed").c_str(), 0444); // readable but not searchable
    ::chmod((scratch / "secret").c_str(), 0000);
    ::chmod(scratch.path().c_str(), 0755);
    test::holdsInChildAs(User, User, {}, [&] {
        Scanner scanner;
        const Lines lines = scanner.scan(scratch.path());
        ASSERT_EQ(lines.size(), 2U);
        EXPECT_EQ(lines[0], "Error Domain=POSIX Code=13 \"The attributes of the file 'one' couldn't be read "
                            "(Permission denied).\"");
        const auto one = child(scanner.root(), "closed")->asFolder()->children[0];
        EXPECT_EQ(one->uid(), platform::NSNumber(-1));
        EXPECT_EQ(one->getCreationDateFormatted(), "(invalid attribute)");
        EXPECT_FALSE(one->exists());
        EXPECT_TRUE(child(scanner.root(), "secret")->asFolder()->children.empty());
        EXPECT_EQ(scanner.enumerator.fileTree->findFileWithUID("(invalid attribute)"), one);
    });
}

TEST(Scanner, ARootMayBeALinkButMustBeADirectory) {
    const Scratch scratch;
    scratch.file("real/inside");
    fs::create_directory_symlink("real", scratch / "link");
    Scanner scanner;
    (void)scanner.scan(scratch / "link");
    struct stat link {
    }, real{};
    ::lstat((scratch / "link").c_str(), &link);
    ::stat((scratch / "link").c_str(), &real);
    EXPECT_EQ(scanner.root().uid(), platform::NSNumber(link.st_ino));
    EXPECT_EQ(scanner.root().getSystemFileNumber(), platform::NSNumber(real.st_ino));
    const auto before = scanner.enumerator.fileTree->root;
    for (const std::string& wrong : {scratch / "none", scratch / "real/inside", std::string()}) {
        EXPECT_EQ(scanner.scan(wrong),
                  Lines{"Error: Could not set current path '" + wrong + "' for the file manager."});
    }
    EXPECT_EQ(scanner.enumerator.fileTree->root, before);
    (void)scanner.scan(scratch / "real"); // a second scan creates a new root
    EXPECT_NE(scanner.enumerator.fileTree->root, before);
    EXPECT_EQ(childrenOf(scanner.root()), Lines{"inside"});
    test::takeApart(before);
}

TEST(Scanner, AChangingDiskHarmsNothing) {
    const Scratch scratch;
    std::multiset<std::string> staying;
    for (int i = 0; i < 300; ++i) {
        staying.insert("f" + std::to_string(i));
        scratch.file("d" + std::to_string(i % 30) + "/f" + std::to_string(i));
    }
    const pid_t churn = ::fork();
    if (churn == 0) {
        for (int i = 0;; ++i) {
            const std::string name =
                scratch / ("d" + std::to_string(i % 30) + "/new" + std::to_string(i % 11));
            std::error_code ignored;
            if (i % 3 == 0) fs::remove_all(name, ignored);
            if (i % 3 == 1) ::mkdir(name.c_str(), 0755);
            if (i % 3 == 2) {
                ::close(::open((name + "/__MACOSX").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
            }
        }
    }
    for (int round = 0; round < 20; ++round) {
        Scanner scanner;
        EXPECT_EQ(scanner.scan(scratch.path()).back(), End);
        std::multiset<std::string> files;
        for (const auto& folder : scanner.root().children) {
            for (const auto& node : folder->asFolder()->children) {
                EXPECT_EQ(node->attributes().isEmpty(), node->uid() == platform::NSNumber(-1));
                if (node->getFileName().starts_with('f')) files.insert(node->getFileName());
            }
        }
        EXPECT_EQ(files, staying);
    }
    ::kill(churn, SIGKILL);
    ::waitpid(churn, nullptr, 0);
}

TEST(Scanner, ExaminesOnePath) {
    const Scratch scratch;
    ::chmod(scratch.file("readonly").c_str(), 0444);
    ::chmod(scratch.path().c_str(), 0755);
    test::holdsInChildAs(User, User, {}, [&] {
        FileEnumerator enumerator;
        CapturedOutput output;
        enumerator.examineFile("readonly", scratch.path());
        Lines lines = output.take();
        ASSERT_EQ(lines.size(), 10U);
        EXPECT_TRUE(lines[9].starts_with("[NSFileAppendOnly: false, NSFileCreationDate: "));
        lines.pop_back();
        EXPECT_EQ(lines, (Lines{" ", "readonly", scratch / "readonly", " - file exists: true",
                                " - file exist / is directory: true / false", " - file is writable: true",
                                " - file is readeble: false", " - file is executable: false",
                                " - file is deletable: false"}));
        enumerator.examineFile("none", scratch.path());
        lines = output.take();
        EXPECT_EQ(lines[4], " - file exist / is directory: false / false");
        EXPECT_TRUE(lines[9].starts_with("Error Domain=POSIX Code=2 "));
    });
}

TEST(Scanner, FormatsNumbersWithTwoDigits) {
    EXPECT_EQ(FileEnumerator::formatNumber(7) + FileEnumerator::formatNumber(10), "0710");
    EXPECT_EQ(FileEnumerator::formatNumber(-5), "0-5");
}

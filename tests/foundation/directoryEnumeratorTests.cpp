// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/FileManager.hpp"
#include "tests/support/child.hpp"

using namespace platform;
using namespace tonewright::test;

namespace {

std::vector<std::string> walk(const std::string& path) {
    std::vector<std::string> items;
    const auto enumerator = FileManager::defaultManager().enumeratorAtPath(path);
    while (enumerator) {
        const auto item = enumerator->nextObject();
        if (!item) break;
        EXPECT_EQ(enumerator->level(), 1 + std::count(item->begin(), item->end(), '/')) << *item;
        items.emplace_back(*item);
    }
    return items;
}

// Creates nested folders whose path is far longer than the system's limit; each folder contains one file.
void makeChain(const std::string& path, int levels, const std::string& name) {
    int directory = ::open(path.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < levels; ++i) {
        ASSERT_EQ(::mkdirat(directory, name.c_str(), 0755), 0);
        const int inner = ::openat(directory, name.c_str(), O_RDONLY | O_DIRECTORY);
        ::close(::openat(inner, "leaf", O_CREAT | O_WRONLY, 0644));
        ::close(directory);
        directory = inner;
    }
    ::close(directory);
}

} // namespace

TEST(DirectoryEnumerator, GivesFoldersBeforeTheirContentsInByteOrder) {
    const Scratch scratch;
    for (const char* name :
         {"b.txt", "a/x.txt", "a/deep/y", "a-b", "A", "\xff\xfe", "zz\nnewline", "a/deep/\x01",
          "same prefix, long enough 2", "same prefix, long enough 10", "same prefix, long enough 1"}) {
        scratch.file(name);
    }
    scratch.folder("empty");
    (void)::symlink("a", (scratch / "link").c_str());
    (void)::symlink(".", (scratch / "self").c_str());
    std::string row;
    for (const std::string& item : walk(scratch.path())) row += item + "|";
    EXPECT_EQ(row, "A|a|a/deep|a/deep/\x01|a/deep/y|a/x.txt|a-b|b.txt|empty|link|same prefix, long enough 1|"
                   "same prefix, long enough 10|same prefix, long enough 2|self|zz\nnewline|\xff\xfe|");
    EXPECT_EQ(walk(scratch / "link"), (std::vector<std::string>{"deep", "deep/\x01", "deep/y", "x.txt"}));
    EXPECT_EQ(FileManager::defaultManager().enumeratorAtPath(scratch / "b.txt"), nullptr);
    EXPECT_EQ(FileManager::defaultManager().enumeratorAtPath(scratch / "none"), nullptr);
}

TEST(DirectoryEnumerator, OpensADirectoryOnlyWhenItsSuccessorIsAskedFor) {
    const Scratch scratch;
    for (const char* name : {"a/inside", "b/inside", "c"}) scratch.file(name);
    const auto enumerator = FileManager::defaultManager().enumeratorAtPath(scratch.path());
    EXPECT_EQ(enumerator->nextObject(), "a");
    std::filesystem::remove_all(scratch / "a");
    EXPECT_EQ(enumerator->nextObject(), "b");
    scratch.file("b/later");
    EXPECT_EQ(enumerator->nextObject(), "b/inside");
    EXPECT_EQ(enumerator->nextObject(), "b/later");
    std::filesystem::remove(scratch / "c");
    EXPECT_EQ(enumerator->nextObject(), "c");
    const FileFacts facts = enumerator->facts();
    EXPECT_TRUE(!facts.exists && facts.attributes.isEmpty() && facts.error);
    EXPECT_EQ(enumerator->nextObject(), std::nullopt);
    EXPECT_EQ(enumerator->nextObject(), std::nullopt);
}

TEST(DirectoryEnumerator, PassesPathsOfAnyLengthAndFewDescriptors) {
    const Scratch scratch;
    makeChain(scratch.path(), 60, std::string(255, 'n')); // a path of 15 KB
    scratch.file("side/a/b/c/file");
    const auto expected = walk(scratch.path());
    EXPECT_EQ(expected.size(), 125U);
    holdsInChild([&] {
        const int next = ::dup(0);
        const rlimit limit{static_cast<rlim_t>(next) + 3, static_cast<rlim_t>(next) + 3};
        ::close(next);
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_EQ(walk(scratch.path()), expected);
    });
    FileManager manager;
    const std::string deepest = scratch / expected[119];
    EXPECT_GT(deepest.size(), 4096U);
    EXPECT_TRUE(manager.fileExistsAtPath(deepest));
    EXPECT_TRUE(manager.isWritableFileAtPath(deepest));
    EXPECT_TRUE(manager.isDeletableFileAtPath(deepest));
    EXPECT_TRUE(manager.attributesOfItemAtPath(deepest));
    EXPECT_EQ(manager.copyItemAtPath(deepest, scratch / "short"), std::nullopt);
    EXPECT_EQ(manager.copyItemAtPath(scratch / std::string(255, 'n'), scratch / "second"), std::nullopt);
    EXPECT_EQ(walk(scratch / "second").size(), 119U);
    EXPECT_EQ(manager.removeItemAtPath(scratch / "second"), std::nullopt);
    EXPECT_FALSE(manager.fileExistsAtPath(scratch / "second"));
    EXPECT_EQ(manager.removeItemAtURL(URL::fileURLWithPath(deepest)), std::nullopt);
    EXPECT_FALSE(manager.fileExistsAtPath(deepest));
    EXPECT_EQ(manager.removeItemAtPath(scratch / std::string(255, 'n')), std::nullopt);
}

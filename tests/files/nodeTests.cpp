// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/Folder.hpp"
#include "tests/support/CapturedOutput.hpp"
#include "tests/support/child.hpp"
#include "tests/support/treeCycles.hpp"

#include "platform/foundation/DateFormatter.hpp"
#include <gtest/gtest.h>
#include <limits>

using namespace tonewright;
using platform::Date;
using platform::FileAttributeKey;
using platform::FileAttributes;
using platform::NSNumber;

namespace {

FileAttributes attributesOf(std::uint64_t number, std::int64_t size) {
    FileAttributes attributes;
    attributes.setValue(FileAttributeKey::NSFileSystemFileNumber, NSNumber(number));
    attributes.setValue(FileAttributeKey::NSFileSize, NSNumber(size));
    attributes.setValue(FileAttributeKey::NSFileCreationDate, Date{0, 0});
    attributes.setValue(FileAttributeKey::NSFileModificationDate, Date{86'400, 0});
    return attributes;
}

std::shared_ptr<File> file(std::string_view subpath) {
    auto node = std::make_shared<File>();
    node->setRootpath("/music/samples");
    node->setSubpath(subpath);
    return node;
}

constexpr const char* Missing = "Unexpectedly found nil while unwrapping an Optional value";

} // namespace

TEST(FileNode, NumbersCountOverAllClassesFromOne) {
    // A process of its own: nothing was counted before.
    EXPECT_EXIT(
        {
            const std::int64_t before = FileBase::lastID();
            const FileBase first;
            const File second;
            const Folder third;
            const bool holds = first.getID() == before + 1 && second.getID() == before + 2 &&
                               third.getIDFormatted() == std::to_string(before + 3);
            std::exit(holds ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(FileNode, BeginsWithItsDefaults) {
    const File node;
    EXPECT_EQ(node.uid(), NSNumber(-1));
    EXPECT_EQ(node.subpath() + node.rootpath(), "");
    EXPECT_FALSE(node.exists() || node.isDirectory() || node.isWritable() || node.isReadeble() ||
                 node.isExecutable() || node.isDeleteble() || node._remote() || node._expanded() ||
                 node._selected());
    EXPECT_EQ(node._indent(), 0);
    EXPECT_EQ(node.parent(), nullptr);
    EXPECT_TRUE(node.attributes().isEmpty());
}

TEST(FileNode, PathsAreTakenApart) {
    const struct {
        const char* subpath;
        std::int64_t indent;
        const char* name;
        const char* extension;
        const char* parent;
    } cases[] = {
        {"a", 0, "a", "", ""},
        {"kick.wav", 0, "kick.wav", "wav", ""},
        {"Sounds/Drums/kick.wav", 2, "kick.wav", "wav", "Sounds/Drums"},
        {"a/b/c.txt", 2, "c.txt", "txt", "a/b"},
        {"a.d/b", 1, "b", "", "a.d"},
        {"archive.tar.gz", 0, "archive.tar.gz", "gz", ""},
        {".hidden", 0, ".hidden", "hidden", ""},
        {"ends.", 0, "ends.", "", ""},
        {"", -1, "samples", "", ""},
        {"a/b/", 1, "b", "", "a"},
        {"a//b", 1, "b", "", "a"},
        {"/a", 1, "a", "", "/"},
        {"/", 0, "/", "", "/"},
        {"a name of more than twenty-three bytes.aif", 0, "a name of more than twenty-three bytes.aif", "aif",
         ""},
        {"new\nline/\xff", 1, "\xff", "", "new\nline"},
    };
    for (const auto& [subpath, indent, name, extension, parent] : cases) {
        const auto node = file(subpath);
        EXPECT_EQ(node->subpath(), subpath);
        EXPECT_EQ(node->_indent(), indent) << subpath;
        EXPECT_EQ(node->getFileName(), name) << subpath;
        EXPECT_EQ(node->getFileExtension(), extension) << subpath;
        EXPECT_EQ(node->getParentPath(), parent) << subpath;
        EXPECT_EQ(node->getFilePath(), std::string("/music/samples/") + subpath);
        std::string xml;
        node->xml(xml);
        EXPECT_NE(xml.find("name='" + std::string(name) + "'"), std::string::npos);
    }
    const auto node = file("a/b");
    node->setRootpath("/other/");
    EXPECT_EQ(node->getFilePath(), "/other//a/b");
    node->setSubpath("");
    EXPECT_EQ(node->getFileName(), "other");
}

TEST(FileNode, TextsSurviveEveryAssignment) {
    const auto node = file("");
    for (std::size_t length : {0U, 1U, 15U, 22U, 23U, 24U, 25U, 255U, 5000U, 3U}) {
        const std::string path = std::string(length % 100, 'd') + "/" + std::string(length, 'n');
        node->setSubpath(path);
        EXPECT_EQ(node->subpath(), path);
        node->setRootpath("/" + std::to_string(length));
        EXPECT_EQ(node->subpath(), path);
    }
    node->setUid(NSNumber(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(node->uid().stringValue(), "18446744073709551615");
    node->setUid(NSNumber(-1));
    EXPECT_EQ(node->uid(), NSNumber(-1));
}

TEST(FileNode, AttributesHaveFallbacksOnlyWhenThereAreNone) {
    const auto node = file("x");
    EXPECT_EQ(node->getFileSize(), NSNumber(-1));
    EXPECT_EQ(node->getSystemFileNumber(), NSNumber(-1));
    for (const std::string& text : {node->getFileSizeFormatted(), node->getSystemFileNumberFormatted(),
                                    node->getCreationDateFormatted(), node->getModifiedDateFormatted()})
        EXPECT_EQ(text, "(invalid attribute)");
    EXPECT_LE(Date::now().seconds - node->getModificationDate().seconds, 1);

    node->setAttributes(attributesOf(17, 1'250'000));
    EXPECT_EQ(node->getSystemFileNumberFormatted(), "17");
    EXPECT_EQ(node->getFileSizeFormatted(), "1.2 MB");
    EXPECT_EQ(node->getCreationDate(), (Date{0, 0}));
    FileAttributes lacking = attributesOf(17, 1);
    lacking.removeValue(FileAttributeKey::NSFileSize);
    node->setAttributes(lacking);
    EXPECT_EQ(node->getSystemFileNumber(), NSNumber(17));
    EXPECT_DEATH((void)node->getFileSize(), Missing);
    EXPECT_DEATH((void)node->getFileSizeFormatted(), Missing);
    std::string xml;
    EXPECT_DEATH(node->xml(xml), Missing);
}

TEST(FileNode, OnlyDirectoriesExpand) {
    const auto folder = std::make_shared<Folder>();
    const auto inner = std::make_shared<Folder>();
    const auto plain = file("x");
    for (const auto& node : {folder, inner}) node->setIsDirectory(true);
    folder->children = {inner, plain};
    folder->setExpanded(true);
    EXPECT_TRUE(folder->_expanded() && inner->_expanded());
    EXPECT_FALSE(plain->_expanded());
    plain->setExpanded(true);
    EXPECT_FALSE(plain->_expanded());

    inner->set_expanded(false);
    FileList list;
    folder->makeExpandedList(folder, list);
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[1], inner);
    list.clear();
    folder->set_expanded(false);
    folder->makeExpandedList(folder, list);
    EXPECT_EQ(list.size(), 1U);
}

TEST(FileNode, ALeafKeepsItsAncestors) {
    std::shared_ptr<File> leaf = file("a/b");
    std::weak_ptr<File> ancestor;
    {
        const auto folder = std::make_shared<Folder>();
        folder->children = {leaf};
        leaf->setParent(folder);
        ancestor = folder;
    }
    EXPECT_FALSE(ancestor.expired());
    test::takeApart(leaf->parent());
    EXPECT_TRUE(ancestor.expired());
}

TEST(FileNode, IsFoundByTheTextOfItsNumberOnly) {
    const auto folder = std::make_shared<Folder>();
    folder->setIsDirectory(true);
    folder->setRootpath("/r");
    folder->setSubpath("top");
    folder->setAttributes(attributesOf(1, 0));
    const auto first = file("top/first");
    first->setAttributes(attributesOf(std::numeric_limits<std::uint64_t>::max(), 0));
    const auto broken = file("top/broken");
    const auto twin = file("top/twin");
    twin->setAttributes(attributesOf(1, 0));
    folder->children = {first, broken, twin};
    const auto find = [&](std::string_view uid) {
        std::shared_ptr<File> found;
        folder->findFileWithUID(uid, folder, found);
        return found;
    };
    test::CapturedOutput output;
    EXPECT_EQ(find("1"), folder);
    EXPECT_EQ(output.take(), std::vector<std::string>{"FileTree: The following folder was found:  1 top"});
    EXPECT_EQ(find("18446744073709551615"), first);
    EXPECT_EQ(output.take(), std::vector<std::string>{
                                 "FileTree: The following file was found:  18446744073709551615 first"});
    EXPECT_EQ(find("(invalid attribute)"), broken);
    EXPECT_EQ(output.take().size(), 1U);
    for (const char* text : {"", "01", "+1", " 1", "1 ", "-1", "0x1", "18446744073709551616", "one", "1\n"})
        EXPECT_EQ(find(text), nullptr) << text;
    EXPECT_TRUE(output.take().empty());
}

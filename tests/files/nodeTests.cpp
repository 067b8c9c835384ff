// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/files/nodes.hpp"
#include "tests/support/CapturedOutput.hpp"
#include "tests/support/child.hpp"
#include "tests/support/treeCycles.hpp"

#include <limits>

using namespace tonewright;
using platform::NSNumber;
using test::makeNode;

namespace {

constexpr const char* Missing = "Unexpectedly found nil while unwrapping an Optional value";

} // namespace

TEST(FileNode, BeginsWithItsDefaultsAndTheNextNumber) {
    const FileBase first;
    const File node;
    const Folder third;
    EXPECT_EQ(node.getID(), first.getID() + 1);
    EXPECT_EQ(third.getIDFormatted(), std::to_string(first.getID() + 2));
    EXPECT_EQ(node.uid(), NSNumber(-1));
    EXPECT_EQ(node.subpath() + node.rootpath(), "");
    EXPECT_FALSE(node.exists() || node.isDirectory() || node.isWritable() || node.isReadeble() ||
                 node.isExecutable() || node.isDeleteble() || node._remote() || node._expanded() ||
                 node._selected() || node._indent() != 0 || node.parent());
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
        {"", -1, "music", "", ""},
        {"a/b/", 1, "b", "", "a"},
        {"a//b", 1, "b", "", "a"},
        {"/a", 1, "a", "", "/"},
        {"/", 0, "/", "", "/"},
        {"a name of more than twenty-three bytes.aif", 0, "a name of more than twenty-three bytes.aif", "aif",
         ""},
        {"new\nline/\xff", 1, "\xff", "", "new\nline"},
    };
    for (const auto& [subpath, indent, name, extension, parent] : cases) {
        const auto node = makeNode("x");
        node->setSubpath(subpath);
        EXPECT_EQ(node->subpath(), subpath);
        EXPECT_EQ(node->_indent(), indent) << subpath;
        EXPECT_EQ(node->getFileName(), name) << subpath;
        EXPECT_EQ(node->getFileExtension(), extension) << subpath;
        EXPECT_EQ(node->getParentPath(), parent) << subpath;
        EXPECT_EQ(node->getFilePath(), std::string("/music/") + subpath);
        std::string xml;
        node->xml(xml);
        EXPECT_NE(xml.find("name='" + std::string(name) + "'"), std::string::npos);
    }
    const auto node = makeNode("a/b");
    node->setRootpath("/other/");
    EXPECT_EQ(node->getFilePath(), "/other//a/b");
    node->setSubpath("");
    EXPECT_EQ(node->getFileName(), "other");
}

TEST(FileNode, TextsSurviveEveryAssignment) {
    const auto node = makeNode("x");
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
    const auto node = makeNode("x");
    EXPECT_EQ(node->getFileSize(), NSNumber(-1));
    EXPECT_EQ(node->getSystemFileNumber(), NSNumber(-1));
    for (const std::string& text : {node->getFileSizeFormatted(), node->getSystemFileNumberFormatted(),
                                    node->getCreationDateFormatted(), node->getModifiedDateFormatted()})
        EXPECT_EQ(text, "(invalid attribute)");
    EXPECT_LE(platform::Date::now().seconds - node->getModificationDate().seconds, 1);

    node->setAttributes(test::attributesOf(17, 1'250'000));
    EXPECT_EQ(node->getSystemFileNumberFormatted(), "17");
    EXPECT_EQ(node->getFileSizeFormatted(), "1.2 MB");
    EXPECT_EQ(node->getCreationDate(), (platform::Date{0, 0}));
    auto lacking = test::attributesOf(17, 1);
    lacking.removeValue(platform::FileAttributeKey::NSFileSize);
    node->setAttributes(lacking);
    EXPECT_EQ(node->getSystemFileNumber(), NSNumber(17));
    EXPECT_DEATH((void)node->getFileSize(), Missing);
    EXPECT_DEATH((void)node->getFileSizeFormatted(), Missing);
    std::string xml;
    EXPECT_DEATH(node->xml(xml), Missing);
}

TEST(FileNode, OnlyDirectoriesExpand) {
    const auto folder = makeNode<Folder>("a");
    const auto inner = makeNode<Folder>("a/b");
    const auto plain = makeNode("a/x");
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
    const auto leaf = makeNode("a/b");
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
    const auto folder = makeNode<Folder>("top", 1);
    const auto first = makeNode("top/first", std::numeric_limits<std::uint64_t>::max());
    const auto broken = makeNode("top/broken");
    const auto twin = makeNode("top/twin", 1);
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

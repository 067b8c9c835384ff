// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/files/nodes.hpp"
#include "tests/support/child.hpp"

using namespace tonewright;
using platform::NSNumber;
using test::makeNode;

namespace {

constexpr const char* Missing = "Unexpectedly found nil while unwrapping an Optional value";

} // namespace

TEST(FileNode, PathsAreTakenApartAndSurviveEveryAssignment) {
    const struct {
        const char* subpath;
        std::int64_t indent;
        const char* name;
        const char* extension;
        const char* parent;
    } cases[] = {
        {"a", 0, "a", "", ""},
        {"Sounds/Drums/kick.wav", 2, "kick.wav", "wav", "Sounds/Drums"},
        {".hidden", 0, ".hidden", "hidden", ""},
        {"ends.", 0, "ends.", "", ""},
        {"", -1, "music", "", ""},
        {"a/b/", 1, "b", "", "a"},
        {"a//b", 1, "b", "", "a"},
        {"/a", 1, "a", "", "/"},
        {"/", 0, "/", "", "/"},
        {"new\nline/\xff", 1, "\xff", "", "new\nline"},
    };
    const auto node = makeNode("x");
    for (const auto& [subpath, indent, name, extension, parent] : cases) {
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
    for (const std::size_t length : {22U, 23U, 24U, 5000U, 3U}) {
        const std::string path = "d/" + std::string(length, 'n');
        node->setSubpath(path);
        node->setRootpath("/other/");
        EXPECT_EQ(node->getFilePath(), "/other//" + path);
    }
    node->setSubpath("");
    EXPECT_EQ(node->getFileName(), "other");
    node->setRootpath("");
    EXPECT_EQ(node->getFileName(), ""); // independent of the current directory
}

TEST(FileNode, AttributesHaveFallbacksOnlyWhenThereAreNone) {
    const auto node = makeNode("x");
    EXPECT_EQ(node->getFileSize(), NSNumber(-1));
    EXPECT_EQ(node->getSystemFileNumber(), NSNumber(-1));
    for (const std::string& text : {node->getFileSizeFormatted(), node->getSystemFileNumberFormatted(),
                                    node->getCreationDateFormatted(), node->getModifiedDateFormatted()}) {
        EXPECT_EQ(text, "(invalid attribute)");
    }
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

TEST(FileNode, IsFoundByTheTextOfItsNumberOnly) {
    const auto folder = makeNode<Folder>("top", 1);
    const auto first = makeNode("top/first", std::numeric_limits<std::uint64_t>::max());
    const auto broken = makeNode("top/broken");
    folder->children = {first, broken, makeNode("top/twin", 1)};
    const std::string found = "FileTree: The following ";
    const auto find = [&](std::string_view uid, const test::Lines& lines) {
        test::CapturedOutput output;
        std::shared_ptr<File> node;
        folder->findFileWithUID(uid, folder, node);
        EXPECT_EQ(output.take(), lines) << uid;
        return node;
    };
    EXPECT_EQ(find("1", {found + "folder was found:  1 top"}), folder);
    EXPECT_EQ(find("18446744073709551615", {found + "file was found:  18446744073709551615 first"}), first);
    EXPECT_EQ(find("(invalid attribute)", {found + "file was found:  (invalid attribute) broken"}), broken);
    for (const char* text : {"", "01", "+1", " 1", "1 ", "-1", "0x1", "18446744073709551616", "one", "1\n"}) {
        EXPECT_EQ(find(text, {}), nullptr);
    }
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/DateFormatter.hpp"
#include "shared/Common/Files/detail/TextWriter.hpp"
#include "tests/files/nodes.hpp"
#include "tests/support/testing.hpp"

using namespace tonewright;

namespace {

// A root with a folder and a file, like the result of a scan.
class TreeTexts : public testing::Test {
  protected:
    void SetUp() override {
        ::setenv("TZ", "UTC", 1);
        platform::DateFormatter::resetTimeZone();
        tree.basePath = "/private/music";
        tree.root = test::makeNode<Folder>("", 2);
        tree.root->set_expanded(true);
        folder = test::addNode<Folder>(tree, "Drums", 10);
        inner = test::addNode(tree, "Drums/it's <kick> & more.wav", 11, 12'345);
        plain = test::addNode(tree, "b.txt", 12, 1);
        tree.clearList();
    }
    void TearDown() override { test::takeApart(tree); }

    FileTree tree;
    std::shared_ptr<Folder> folder;
    std::shared_ptr<File> inner, plain;
};

#define DATES "created='Jan 1, 1970 at 12:00:00 AM' modified='Nov 16, 2026 at 9:40:14 AM'"

} // namespace

TEST_F(TreeTexts, NestedElements) {
    EXPECT_EQ(tree.xml(), "\n<folder path='/music' expanded='true' " DATES " depth='0' >"
                          "\n\t<folder subpath='Drums' expanded='false' " DATES " depth='0' >"
                          "\n\t\t<file name='it's <kick> & more.wav' size='12 KB' " DATES " depth='1' />"
                          "\n\t</folder>"
                          "\n\t<file name='b.txt' size='1 byte' " DATES " depth='0' />"
                          "\n</folder>");
    std::string text = "before";
    folder->xml(text); // without indentation every folder is written as a root
    EXPECT_TRUE(text.starts_with("before\n<folder path='/music' expanded='false' "));
    EXPECT_DEATH(folder->xml(text, -1), "Range requires lowerBound <= upperBound");
    EXPECT_DEATH((void)FileTree().xml(),
                 "^Unexpectedly found nil while implicitly unwrapping an Optional value");
}

TEST_F(TreeTexts, ElementsInARow) {
    EXPECT_EQ(tree.list(), "\n<!-- file list -->\n<files basepath='/private/music'>\n</files>");
    tree.setExpanded(true);
    tree.makeExpandedList();
    EXPECT_EQ(tree.list(),
              "\n<!-- file list -->\n<files basepath='/private/music'>"
              "\n\t<folder id='10' name 'Drums' subpath='Drums' " DATES " depth='0' />"
              "\n\t\t<file id='11' name='it's <kick> & more.wav' size='12 KB' " DATES " depth='1' />"
              "\n\t<file id='12' name='b.txt' size='1 byte' " DATES " depth='0' />"
              "\n</files>");
    const auto bare = test::makeNode("bare");
    std::string text;
    bare->list(text);
    EXPECT_EQ(text, "<file id='-1' name='bare' size='(invalid attribute)' created='(invalid attribute)' "
                    "modified='(invalid attribute)' depth='0' />");
    bare->setSubpath("");
    EXPECT_DEATH(bare->list(text), "Range requires lowerBound <= upperBound");
    EXPECT_DEATH(bare->dumpout(), "Range requires lowerBound <= upperBound");
    text.clear();
    bare->xml(text);
    EXPECT_NE(text.find("depth='-1'"), std::string::npos);
}

TEST_F(TreeTexts, DumpsShowEveryField) {
    test::CapturedOutput output;
    tree.dumpoutRoot();
    const auto lines = output.take();
    const std::string id = inner->getIDFormatted();
    const std::string attributes =
        "[NSFileCreationDate: 1970-01-01 00:00:00 +0000, NSFileModificationDate: "
        "2026-11-16 09:40:14 +0000, NSFileSize: 12345, NSFileSystemFileNumber: 11]";
    char address[64];
    std::snprintf(address, sizeof address, "Optional(<Folder: %p>)", static_cast<void*>(folder.get()));
    std::vector<std::string> expected = {
        " filename='it's <kick> & more.wav' />",
        " _remote='false' _expanded='false' _selected='false' _indent='1' />",
        " uid=11 parent='" + std::string(address) +
            "' rootpath='/music' subpath='Drums/it's <kick> & more.wav' exists=true isDirectory=false "
            "isWritable=false isReadeble=false isExecutable=false isDeleteble=false attributes='" +
            attributes + "' />",
        " label='uid' type='NSNumber' value='11' />",
        " label='parent' type='Optional<File>' value='" + std::string(address) + "' />",
        " label='rootpath' type='String' value='/music' />",
        " label='subpath' type='String' value='Drums/it's <kick> & more.wav' />",
        " label='exists' type='Bool' value='true' />",
    };
    for (const char* no : {"isDirectory", "isWritable", "isReadeble", "isExecutable", "isDeleteble"}) {
        expected.push_back(std::string(" label='") + no + "' type='Bool' value='false' />");
    }
    expected.push_back(" label='attributes' type='Dictionary<FileAttributeKey, Any>' value='" + attributes +
                       "' />");
    for (auto& line : expected) line.insert(0, "	<item id=" + id);
    // Five lines for the root, five for the folder, fourteen for each file.
    ASSERT_EQ(lines.size(), 5U + 5U + 14U + 14U);
    EXPECT_EQ(std::vector<std::string>(lines.begin() + 10, lines.begin() + 24), expected);
    const std::string root = "<item id=" + tree.root->getIDFormatted();
    EXPECT_EQ(lines[0], root + " filename='music' />");
    EXPECT_NE(lines[2].find(" parent='nil' "), std::string::npos);
    char value[128];
    std::snprintf(value, sizeof value,
                  " label='children' type='Array<File>' value='[<Folder: %p>, <File: %p>]' />",
                  static_cast<void*>(folder.get()), static_cast<void*>(plain.get()));
    EXPECT_EQ(lines[3], root + value);
    EXPECT_EQ(lines[4], root + " label='children' type='Array<File>' />");

    tree.makeExpandedList();
    tree.dumpout();
    EXPECT_EQ(output.take().size(), 5U + 14U + 14U);
    tree.filelist.clear();
    tree.filelist.push_back(plain);
    tree.filelist.push_back(tree.root); // nothing after the root is dumped
    tree.filelist.push_back(plain);
    tree.dumpout();
    EXPECT_EQ(output.take().size(), 14U + 5U + 5U + 14U + 14U);
    FileTree().dumpoutRoot();
    EXPECT_TRUE(output.take().empty());
}

TEST(TextWriter, PiecesOfEveryKindStayWholeWhereverTheTextGrows) {
    std::string expected, text;
    {
        TextWriter writer(text);
        for (int i = 0; i < 5000; ++i) {
            writer.writeNumber(-i);
            writer.write(std::string(static_cast<std::size_t>(i % 7), 'x'));
            writer.writeTabs(i % 3);
            expected += std::to_string(-i) + std::string(static_cast<std::size_t>(i % 7), 'x') +
                        std::string(static_cast<std::size_t>(i % 3), '\t');
        }
    }
    EXPECT_EQ(text, expected);
}

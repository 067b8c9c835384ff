// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/files/memory.hpp"
#include "tests/files/nodes.hpp"
#include "tests/support/testing.hpp"

using namespace tonewright;
using platform::NSNumber;
using test::makeNode;

namespace {

constexpr std::string_view RootIdentifier = "NSFileProviderRootContainerItemIdentifier";
constexpr std::string_view WorkingSetIdentifier = "NSFileProviderWorkingSetContainerItemIdentifier";
using Names = std::vector<std::string>;

// The root contains A (1), with x (2) and Deep (3), which contains y (4); and b (5).
class Tree : public testing::Test {
  protected:
    void SetUp() override {
        tree.root = makeNode<Folder>("");
        test::addNode<Folder>(tree, "A", 1);
        test::addNode(tree, "A/x", 2);
        test::addNode<Folder>(tree, "A/Deep", 3);
        test::addNode(tree, "A/Deep/y", 4);
        test::addNode(tree, "b", 5);
        tree.clearList();
    }
    void TearDown() override { test::takeApart(tree); }
    Names names() const {
        Names names;
        for (const auto& node : tree.filelist) names.push_back(node->getFileName());
        return names;
    }

    FileTree tree;
};

} // namespace

TEST_F(Tree, PagesShowOneFolder) {
    test::CapturedOutput output;
    tree.setExpanded(true);
    EXPECT_FALSE(tree.root->children[1]->_expanded()); // not a directory
    tree.makeExpandedList();
    EXPECT_EQ(names(), (Names{"A", "x", "Deep", "y", "b"}));
    tree.makeExpandedPage(RootIdentifier);
    EXPECT_EQ(names(), (Names{"A", "b"}));
    EXPECT_TRUE(tree.root->_expanded());
    EXPECT_EQ(output.take(), Names{"FileTree: Root node was expanded."});
    tree.makeExpandedPage("1");
    EXPECT_EQ(names(), (Names{"A", "x", "Deep"}));
    EXPECT_EQ(output.take(), Names{"FileTree: The following folder was found:  1 A"});
    tree.makeExpandedPage("5");
    EXPECT_EQ(names(), Names{});
    EXPECT_EQ(output.take(), (Names{"FileTree: The following file was found:  5 b",
                                    "Warning: The file cannot become expanded."}));
    for (const std::string_view unknown :
         {std::string_view("77"), std::string_view(""), WorkingSetIdentifier}) {
        tree.makeExpandedPage(unknown);
        EXPECT_EQ(names(), Names{});
        EXPECT_EQ(output.take(), Names{"Warning: The file was not found."});
    }
}

TEST_F(Tree, PathsExpandTheAncestorsToo) {
    test::CapturedOutput output;
    tree.makeExpandedPath("3");
    EXPECT_EQ(names(), (Names{"Deep", "y"}));
    EXPECT_TRUE(tree.root->_expanded());
    EXPECT_TRUE(tree.root->children[0]->_expanded());
    tree.makeExpandedList();
    EXPECT_EQ(names(), (Names{"A", "x", "Deep", "y", "b"}));
    (void)output.take();
    for (const std::string_view container : {RootIdentifier, WorkingSetIdentifier}) {
        tree.makeExpandedPath(container);
        EXPECT_EQ(names(), (Names{"A", "b"}));
        EXPECT_EQ(output.take(), Names{"FileTree: (" + std::string(container) + ") Root node was expanded."});
    }
    tree.makeExpandedPath("4");
    EXPECT_EQ(output.take().back(), "Warning: The file cannot become expanded.");
    tree.makeExpandedPath("44");
    EXPECT_EQ(output.take(), Names{"Warning: The file was not found."});
}

TEST_F(Tree, LookupReadsTheAttributesAndSparesTheRoot) {
    test::CapturedOutput output;
    EXPECT_EQ(tree.findFileWithUID(RootIdentifier), tree.root);
    EXPECT_EQ(output.take(), Names{"FileTree: The file (root) was found :  " + std::string(RootIdentifier)});
    tree.root->setAttributes(test::attributesOf(99, 0));
    EXPECT_EQ(tree.findFileWithUID("99"), nullptr);
    tree.root->children[1]->setUid(NSNumber(4)); // the search reads only the attributes
    EXPECT_EQ(tree.findFileWithUID("4")->getFileName(), "y");
    tree.setExpanded(true);
    tree.root->set_expanded(false);
    tree.setExpanded(true);
    EXPECT_FALSE(tree.root->_expanded());
}

TEST_F(Tree, AParentThatIsNoFolderIsFatal) {
    const auto orphan = makeNode("A/new");
    const auto misfit = makeNode("A");
    misfit->setIsDirectory(true);
    tree.filelist.push_back(misfit);
    EXPECT_DEATH(tree.findParent(orphan), "Could not cast");
    EXPECT_DEATH(tree.findParent(nullptr), "^Unexpectedly found nil while implicitly unwrapping");
}

TEST(DeepTree, CostsInProportionToItsLevels) {
    constexpr std::size_t Levels = 30'000;
    FileTree tree;
    tree.root = makeNode<Folder>("");
    const long before = residentBytes();
    std::string path;
    for (std::size_t level = 0; level < Levels; ++level) {
        (void)test::addNode<Folder>(tree, path += level == 0 ? "d" : "/d");
    }
    EXPECT_LT(residentBytes() - before, 60L << 20U); // whole paths would occupy 900 MB
    const auto last = tree.filelist.back();
    EXPECT_EQ(last->subpath(), path);
    EXPECT_EQ(last->_indent(), Levels - 1);
    // Renaming one node does not affect any other.
    tree.root->children[0]->setSubpath("renamed");
    EXPECT_EQ(last->subpath(), path);
    tree.filelist[Levels / 2]->setRootpath("/elsewhere");
    EXPECT_EQ(tree.filelist[Levels / 2]->getFilePath(), "/elsewhere/" + path.substr(0, Levels + 1));
    EXPECT_EQ(last->rootpath(), "/music");
    test::takeApart(tree);
}

TEST(EmptyTree, EndsOrStaysSilent) {
    FileTree tree;
    test::CapturedOutput output;
    tree.makeExpandedPage(RootIdentifier);
    tree.setExpanded(true);
    EXPECT_EQ(tree.findFileWithUID("1"), nullptr);
    EXPECT_TRUE(output.take().empty());
    tree.makeExpandedPath("1");
    EXPECT_EQ(output.take(), Names{"Warning: The file was not found."});
    constexpr const char* Implicitly =
        "^Unexpectedly found nil while implicitly unwrapping an Optional value";
    EXPECT_DEATH(tree.makeExpandedPath(WorkingSetIdentifier), Implicitly);
    EXPECT_DEATH(tree.makeExpandedList(), "^Unexpectedly found nil while unwrapping an Optional value");
    EXPECT_DEATH(tree.findParent(std::make_shared<File>()), Implicitly);
}

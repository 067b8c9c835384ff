// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares thousands of small trees with the literal algorithm, a walk over the list from its end to its
// beginning.
#include "tests/files/nodes.hpp"
#include "tests/support/testing.hpp"

using namespace tonewright;

namespace {

// Returns the node to which the walk attaches `file`: a folder of the list, the root, or null.
std::shared_ptr<File> literalParent(const FileTree& tree, const File& file) {
    if (file._indent() < 1) return tree.root;
    const std::string path = file.getParentPath();
    if (path.empty()) return tree.root;
    if (tree.filelist.empty()) return nullptr;
    for (std::size_t i = tree.filelist.size(); i-- > 0;) {
        const auto& entry = tree.filelist[i];
        if (entry->isDirectory() && entry->subpath() == path) return entry;
    }
    return tree.root;
}

class Random {
  public:
    explicit Random(unsigned seed)
        : _engine(seed) {}
    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(_engine);
    }
    std::string path() {
        static constexpr const char* Names[] = {"a", "b", "c", "a name that is longer than others"};
        std::string path;
        for (std::size_t count = 1 + below(4); count > 0; --count) {
            if (!path.empty()) path += below(40) == 0 ? "//" : "/";
            path += Names[below(std::size(Names))];
        }
        const std::size_t oddity = below(60);
        if (oddity == 0) return "";
        if (oddity == 1) return "/" + path;
        if (oddity == 2) return path + "/";
        return path;
    }

  private:
    std::mt19937 _engine;
};

void edit(FileTree& tree, Random& random) {
    if (tree.filelist.empty()) return;
    const std::size_t at = random.below(tree.filelist.size());
    const auto node = tree.filelist[at];
    const auto other = tree.filelist[random.below(tree.filelist.size())];
    const std::size_t which = random.below(9);
    if (which == 0) node->setSubpath(random.path());
    if (which == 1) node->setIsDirectory(node->asFolder() != nullptr && random.below(2) == 0);
    if (which == 2) tree.filelist.erase(at);
    if (which == 3) tree.filelist.insert(at, other);
    if (which == 4) tree.filelist.replace(at, other);
    if (which == 5) tree.filelist.push_back(node);
    if (which == 6) tree.filelist = FileList(tree.filelist);
    if (which == 7) node->set_indent(static_cast<std::int64_t>(random.below(3)) - 1);
    if (which == 8 && random.below(20) == 0) tree.clearList();
}

} // namespace

TEST(ParentIndex, AgreesWithTheWalkThroughEveryEdit) {
    std::set<std::shared_ptr<File>> all;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        Random random(seed);
        FileTree tree;
        FileTree other; // contains the same nodes as `tree`
        tree.root = std::make_shared<Folder>();
        other.root = tree.root;
        const std::size_t editsInHundred = seed % 5 * 10;
        for (int step = 0; step < 60; ++step) {
            if (random.below(100) < editsInHundred) edit(tree, random);
            const std::shared_ptr<File> node =
                random.below(2) == 0 ? std::make_shared<Folder>() : std::make_shared<File>();
            node->setIsDirectory(node->asFolder() != nullptr && random.below(10) != 0);
            node->setSubpath(random.path());
            const auto expected = literalParent(tree, *node);
            const std::size_t before = expected ? expected->asFolder()->children.size() : 0;
            tree.findParent(node);
            ASSERT_EQ(node->parent(), expected) << "seed " << seed << " step " << step;
            if (expected) {
                ASSERT_EQ(expected->asFolder()->children.size(), before + 1);
                ASSERT_EQ(expected->asFolder()->children.back(), node);
            }
            tree.filelist.push_back(node);
            if (random.below(10) == 0) other.filelist.push_back(node);
            all.insert(node);
        }
        for (const auto& node : all) {
            node->setParent(nullptr);
            if (node->asFolder() != nullptr) node->asFolder()->children.clear();
        }
        tree.root->children.clear();
        all.clear();
    }
}

TEST(ParentIndex, IsConstantPerItemInOneLargeFolder) {
    // With a quadratic search this would take minutes.
    FileTree tree;
    tree.root = std::make_shared<Folder>();
    const auto folder = test::addNode<Folder>(tree, "wide");
    constexpr std::size_t Items = 200'000;
    for (std::size_t i = 0; i < Items; ++i) test::addNode(tree, "wide/" + std::to_string(i));
    EXPECT_EQ(folder->children.size(), Items);
    folder->setSubpath("renamed"); // now each search walks the list once, and then the index is rebuilt
    for (int i = 0; i < 1000; ++i) test::addNode(tree, "renamed/" + std::to_string(i));
    EXPECT_EQ(folder->children.size(), Items + 1000);
    test::takeApart(tree);
}

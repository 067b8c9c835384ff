// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Thousands of small trees beside the literal algorithm: a walk over the list from its end to its beginning.
#include "shared/Common/Files/FileTree.hpp"
#include "tests/support/treeCycles.hpp"

#include <gtest/gtest.h>
#include <random>
#include <set>

using namespace tonewright;

namespace {

// What the walk attaches the node to: a folder of the list, the root, or (null) nothing.
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
    switch (random.below(9)) {
    case 0:
        node->setSubpath(random.path());
        break;
    case 1:
        node->setIsDirectory(node->asFolder() != nullptr && random.below(2) == 0);
        break;
    case 2:
        tree.filelist.erase(at);
        break;
    case 3:
        tree.filelist.insert(at, tree.filelist[random.below(tree.filelist.size())]);
        break;
    case 4:
        tree.filelist.replace(at, tree.filelist[random.below(tree.filelist.size())]);
        break;
    case 5:
        tree.filelist.push_back(node);
        break;
    case 6: {
        const FileList copy = tree.filelist;
        tree.filelist = copy;
        break;
    }
    case 7:
        node->set_indent(static_cast<std::int64_t>(random.below(3)) - 1);
        break;
    case 8:
        if (random.below(20) == 0) tree.clearList();
        break;
    }
}

} // namespace

TEST(ParentIndex, AgreesWithTheWalkThroughEveryEdit) {
    std::set<std::shared_ptr<File>> all;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        Random random(seed);
        FileTree tree;
        FileTree other; // its nodes lie in both lists
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
    // A quadratic search would need minutes here.
    FileTree tree;
    tree.root = std::make_shared<Folder>();
    const auto folder = std::make_shared<Folder>();
    folder->setIsDirectory(true);
    folder->setSubpath("wide");
    tree.findParent(folder);
    tree.filelist.push_back(folder);
    constexpr int Items = 200'000;
    for (int i = 0; i < Items; ++i) {
        const auto node = std::make_shared<File>();
        node->setSubpath("wide/" + std::to_string(i));
        tree.findParent(node);
        tree.filelist.push_back(node);
    }
    EXPECT_EQ(folder->children.size(), static_cast<std::size_t>(Items));
    tree.root->children[0]->setSubpath("renamed"); // now every search walks once, and then indexes again
    for (int i = 0; i < 1000; ++i) {
        const auto node = std::make_shared<File>();
        node->setSubpath("renamed/" + std::to_string(i));
        tree.findParent(node);
        tree.filelist.push_back(node);
    }
    EXPECT_EQ(folder->children.size(), static_cast<std::size_t>(Items + 1000));
    test::takeApart(tree);
}

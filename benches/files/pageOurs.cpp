// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the requests that a file browser makes to a tree, and the search for an item's parent.
// bench_page DIRECTORY: prints lines "name value": nanoseconds per node walked or per entry returned.
#include "benches/files/memory.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <unistd.h>

namespace {

using namespace tonewright;

double nanoseconds(const std::function<void()>& work, int rounds = 5) {
    double best = 1e300;
    for (int i = 0; i < rounds; ++i) {
        timespec before{};
        timespec after{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &before);
        work();
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &after);
        best = std::min(best, static_cast<double>(after.tv_sec - before.tv_sec) * 1e9 +
                                  static_cast<double>(after.tv_nsec - before.tv_nsec));
    }
    return best;
}

// Attaches `items` new nodes to one folder, as scanning a wide directory does; returns the nanoseconds per
// item.
double parentSearch(int items) {
    FileTree tree;
    tree.root = std::make_shared<Folder>();
    const auto folder = std::make_shared<Folder>();
    folder->setIsDirectory(true);
    folder->setSubpath("one folder");
    tree.findParent(folder);
    tree.filelist.push_back(folder);
    std::vector<std::shared_ptr<File>> nodes;
    for (int i = 0; i < items; ++i) {
        nodes.push_back(std::make_shared<File>());
        nodes.back()->setSubpath("one folder/" + std::to_string(i));
    }
    const double time = nanoseconds(
        [&] {
            for (const auto& node : nodes) {
                tree.findParent(node);
                tree.filelist.push_back(node);
            }
        },
        1);
    return time / items;
}

// Returns the last folder in the tree's order.
const File& lastFolder(const Folder& folder) {
    for (auto child = folder.children.rbegin(); child != folder.children.rend(); ++child) {
        if (const Folder* inner = (*child)->asFolder()) return lastFolder(*inner);
    }
    return folder;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    auto* enumerator = new FileEnumerator;
    enumerator->enumerate(argv[1]);
    FileTree& tree = *enumerator->fileTree;
    tree.setExpanded(true);
    tree.makeExpandedList();
    const auto nodes = static_cast<double>(tree.filelist.size());
    const std::string last = lastFolder(*tree.root).getSystemFileNumberFormatted();

    const auto report = [](const char* name, double value) {
        std::fprintf(stderr, "%s %.2f\n", name, value);
    };
    report("nodes", nodes);
    report("expand_ns_per_node", nanoseconds([&] { tree.setExpanded(true); }) / nodes);
    report("list_ns_per_entry", nanoseconds([&] { tree.makeExpandedList(); }) / nodes);
    report("lookup_ns_per_node", nanoseconds([&] { (void)tree.findFileWithUID("not a number"); }) / nodes);
    report("page_ns_per_node", nanoseconds([&] { tree.makeExpandedPage(last); }) / nodes);
    report("path_ns_per_node", nanoseconds([&] { tree.makeExpandedPath(last); }) / nodes);
    for (const int items : {1000, 10'000, 100'000, 400'000}) {
        std::fprintf(stderr, "parent_%d_ns_per_item %.2f\n", items, parentSearch(items));
    }
    ::_exit(0);
}

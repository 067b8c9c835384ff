// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes a tree in its three text forms, with the library and with the limit program, and checks that both
// write the same bytes.
//   bench_text DIRECTORY ROUNDS
// Prints one line per form: name, nanoseconds of the library, nanoseconds of the limit program, nodes, bytes.
#include "benches/files/textLimit.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace tonewright;

double cpuNanoseconds(const std::function<void()>& work) {
    timespec before{};
    timespec after{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &before);
    work();
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &after);
    return static_cast<double>(after.tv_sec - before.tv_sec) * 1e9 +
           static_cast<double>(after.tv_nsec - before.tv_nsec);
}

// Runs both alternately and prints the shortest time of each.
void compare(const char* name, int rounds, std::size_t nodes, std::size_t bytes,
             const std::function<void()>& ours, const std::function<void()>& limit) {
    double bestOurs = 1e300;
    double bestLimit = 1e300;
    for (int i = 0; i < rounds; ++i) {
        bestOurs = std::min(bestOurs, cpuNanoseconds(ours));
        bestLimit = std::min(bestLimit, cpuNanoseconds(limit));
    }
    std::fprintf(stderr, "%s %.0f %.0f %zu %zu\n", name, bestOurs, bestLimit, nodes, bytes);
}

void fail(const char* what) {
    std::fprintf(stderr, "the limit program does not write the same bytes as %s\n", what);
    std::exit(1);
}

std::string dumpOf(const FileTree& tree) {
    std::FILE* file = std::tmpfile();
    const int usual = ::dup(STDOUT_FILENO);
    ::dup2(::fileno(file), STDOUT_FILENO);
    tree.dumpoutRoot();
    ::dup2(usual, STDOUT_FILENO);
    ::close(usual);
    std::string text(static_cast<std::size_t>(::lseek(::fileno(file), 0, SEEK_END)), '\0');
    if (::pread(::fileno(file), text.data(), text.size(), 0) < 0) std::exit(1);
    std::fclose(file);
    return text;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    ::setenv("TZ", "UTC", 1);
    // Keeps freed memory in the process. Otherwise the kernel's time for mapping it, which depends on the
    // order of the measurements, would dominate both figures.
    ::mallopt(M_MMAP_THRESHOLD, 1 << 30);
    ::mallopt(M_TRIM_THRESHOLD, 1 << 30);
    const int rounds = std::atoi(argv[2]);
    const int null = ::open("/dev/null", O_WRONLY);
    ::dup2(null, STDOUT_FILENO);
    auto* enumerator = new FileEnumerator;
    enumerator->enumerate(argv[1]);
    FileTree& tree = *enumerator->fileTree;
    const FlatTree flat = sorted(flatScan(argv[1]));
    const std::size_t nodes = flat.records.size();

    const std::string xml = tree.xml();
    const std::string opening = xml.substr(0, xml.find('>') + 1);
    if (limitXML(flat, opening).view() != xml) fail("xml()");
    compare(
        "xml", rounds, nodes, xml.size(), [&] { (void)tree.xml(); }, [&] { (void)limitXML(flat, opening); });

    tree.setExpanded(true);
    tree.makeExpandedList();
    const std::string list = tree.list();
    if (limitList(flat, tree.basePath).view() != list) fail("list()");
    compare(
        "list", rounds, nodes, list.size(), [&] { (void)tree.list(); },
        [&] { (void)limitList(flat, tree.basePath); });

    // The dump goes to a file in memory, where each line costs a system call, as with a pipe.
    const std::string dump = dumpOf(tree);
    const int memory = ::memfd_create("dump", 0);
    ::dup2(memory, STDOUT_FILENO);
    const auto again = [] { ::lseek(STDOUT_FILENO, 0, SEEK_SET); };
    again();
    compare(
        "dump", rounds, nodes, dump.size(),
        [&] {
            again();
            tree.dumpoutRoot();
        },
        [&] {
            again();
            limitDump(dump);
        });
    ::_exit(0);
}

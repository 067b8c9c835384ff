// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tonewright-files: scans directories into trees and writes them, downloads files, and prints a report.
#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/ByteCountFormatter.hpp"
#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/console.hpp"
#include "platform/network/URLSession.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"
#include "shared/Common/Files/ItemIdentifier.hpp"
#include "tools/files/Arguments.hpp"
#include "tools/files/Progress.hpp"
#include "tools/files/litter.hpp"
#include "tools/files/output.hpp"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <iostream>
#include <limits>

namespace {

using namespace tonewright;
using namespace tonewright::tool;

constexpr int Done = 0;
constexpr int Failed = 1;
constexpr int WrongUsage = 2;

struct Counts {
    std::int64_t files = 0;
    std::int64_t folders = 0;
    std::int64_t bytes = 0;
};

void count(const Folder& folder, Counts& counts) {
    for (const auto& child : folder.children) {
        if (Folder* inner = child->asFolder()) {
            ++counts.folders;
            count(*inner, counts);
        } else {
            ++counts.files;
            if (!child->attributes().isEmpty()) counts.bytes += child->getFileSize().longLongValue();
        }
    }
}

std::string counted(std::int64_t number, std::string_view what) {
    return std::to_string(number).append(" ").append(what).append(number == 1 ? "" : "s");
}

// Returns the absolute path of the directory to scan. A relative path must be resolved first, because the
// scan changes the current directory.
std::string directoryOf(const Arguments& arguments) {
    std::string named = arguments.operands.front();
    if (named == "-" && !std::getline(std::cin, named)) named.clear();
    if (named.empty()) return named;
    std::string absolute;
    if (!named.starts_with('/')) {
        std::error_code error; // set if the current directory has been removed
        absolute = std::filesystem::current_path(error).string();
        if (error) return {};
    }
    // Removes empty components and ".". The file system resolves "..".
    for (std::size_t at = 0; at < named.size();) {
        const std::size_t end = std::min(named.find('/', at), named.size());
        const std::string_view component = std::string_view(named).substr(at, end - at);
        if (!component.empty() && component != ".") {
            if (!absolute.ends_with('/')) absolute += '/';
            absolute += component;
        }
        at = end + 1;
    }
    return absolute.empty() ? "/" : absolute;
}

int writeDump(const FileTree& tree, const Arguments& arguments) {
    if (!redirectOutput(arguments.output)) return Failed;
    platform::printToStandardError(false);
    tree.dumpoutRoot();
    return linesGotOut(arguments.output) ? Done : Failed;
}

int writeTree(FileTree& tree, const Arguments& arguments) {
    std::string result;
    switch (arguments.command) {
    case Command::XML:
        result = tree.xml();
        break;
    case Command::List:
        tree.setExpanded(true);
        tree.makeExpandedList();
        result = tree.list();
        break;
    case Command::Page:
        tree.makeExpandedPage(arguments.operands.size() > 1 ? std::string_view(arguments.operands[1])
                                                            : RootContainerItemIdentifier);
        if (tree.filelist.empty() && arguments.operands.size() > 1 &&
            arguments.operands[1] != RootContainerItemIdentifier) {
            return Failed; // the reason has been printed
        }
        result = tree.list();
        break;
    default: {
        Counts counts;
        count(*tree.root, counts);
        result = counted(counts.files, "file") + ", " + counted(counts.folders, "folder") + ", " +
                 counted(counts.bytes, "byte");
    }
    }
    return writeResult(result, arguments.output) ? Done : Failed;
}

bool canBeEntered(const std::string& directory) {
    const auto& manager = platform::FileManager::defaultManager();
    bool isDirectory = false;
    return manager.fileExistsAtPath(directory, isDirectory) && isDirectory &&
           manager.isExecutableFileAtPath(directory);
}

int writeLitter(const Litter& litter, const std::string& directory, const Arguments& arguments) {
    if (!redirectOutput(arguments.output)) return Failed;
    for (const std::string& subpath : litter.subpaths) {
        platform::print(lineOf((directory == "/" ? "" : directory) + "/" + subpath));
    }
    for (const auto& error : litter.readErrors) platform::warn(error.localizedDescription());
    return linesGotOut(arguments.output) && litter.readErrors.empty() ? Done : Failed;
}

int scan(const Arguments& arguments) {
    const std::string directory = directoryOf(arguments);
    if (directory.empty()) {
        platform::warn("tonewright-files: no directory was given, or the current directory has been removed");
        return WrongUsage;
    }
    std::optional<Litter> litter;
    if (arguments.isDryRun || !arguments.saysYes) {
        std::atomic<std::int64_t> seen{0};
        const Progress progress([&seen] { return std::to_string(seen) + " items examined"; });
        litter = findLitter(directory, seen);
    } else if (platform::FileManager::defaultManager().enumeratorAtPath(directory)) {
        litter.emplace();
    }
    // The scanner reports a directory that it cannot enter, but a directory that it cannot read is a fatal
    // error.
    if (!litter && (arguments.isDryRun || canBeEntered(directory))) {
        platform::warn("tonewright-files: cannot open '" + directory + "'");
        return Failed;
    }
    if (arguments.isDryRun) return writeLitter(*litter, directory, arguments);
    if (litter && !litter->subpaths.empty() && !mayDelete(litter->subpaths)) return Failed;

    // The tree is never freed, because that would take longer than exiting.
    static auto* enumerator = new FileEnumerator;
    const std::string start = enumerator->fileManager.currentDirectoryPath();
    {
        const Progress progress(
            [first = FileBase::lastID()] { return std::to_string(FileBase::lastID() - first) + " items"; });
        platform::printToStandardError(true);
        enumerator->enumerate(directory);
    }
    enumerator->fileManager.changeCurrentDirectoryPath(start); // the output file may be relative
    FileTree& tree = *enumerator->fileTree;
    if (!tree.root) return Failed; // the reason has been printed
    const int written =
        arguments.command == Command::Dump ? writeDump(tree, arguments) : writeTree(tree, arguments);
    return enumerator->hasReadErrors() ? Failed : written;
}

int download(const Arguments& arguments) {
    const auto url = platform::URL::fromString(arguments.operands.front());
    if (!url || url->scheme().empty()) {
        platform::warn("tonewright-files: '" + arguments.operands.front() + "' is not a URL");
        return WrongUsage;
    }
    if (!redirectOutput(arguments.output)) return Failed;
    static std::atomic<bool> hasEnded{false};
    static DownloadOutcome outcome{}; // written before `hasEnded` is set
    static std::shared_ptr<platform::URLSessionTask> kept;
    static std::atomic<platform::URLSessionTask*> task{nullptr}; // points to the task in `kept`
    {
        const Progress progress([] {
            const platform::URLSessionTask* begun = task;
            return platform::ByteCountFormatter::stringFromByteCount(
                begun ? begun->countOfBytesReceived() : 0, platform::ByteCountStyle::File);
        });
        platform::RunLoop loop = platform::RunLoop::current();
        FileEnumerator::startDownload(*url, {[](const auto& begun) {
                                                 kept = begun;
                                                 task = kept.get();
                                             },
                                             [loop](DownloadOutcome ended) mutable {
                                                 outcome = ended;
                                                 hasEnded = true;
                                                 loop.wakeUp();
                                             }});
        loop.runUntil([] { return hasEnded.load(); }, std::numeric_limits<double>::infinity());
    }
    if (outcome == DownloadOutcome::NotStored) {
        platform::warn("tonewright-files: only http and https URLs can be downloaded");
    }
    return linesGotOut(arguments.output) && outcome == DownloadOutcome::Stored ? Done : Failed;
}

} // namespace

int main(int argc, char** argv) {
    platform::reserveStandardOutput();
    const auto arguments = readArguments({argv + 1, argv + argc});
    if (!arguments) return WrongUsage;
    switch (arguments->command) {
    case Command::Help:
        platform::print(Usage);
        return linesGotOut("-") ? Done : Failed;
    case Command::Version:
        platform::print("tonewright-files " TONEWRIGHT_VERSION);
        return linesGotOut("-") ? Done : Failed;
    case Command::Download:
        return download(*arguments);
    case Command::Report:
        if (!redirectOutput(arguments->output)) return Failed;
        FileEnumerator::shared().testFileManager();
        return linesGotOut(arguments->output) && !FileEnumerator::shared().hasReadErrors() ? Done : Failed;
    default:
        return scan(*arguments);
    }
}

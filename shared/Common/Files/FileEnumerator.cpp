// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/FileEnumerator.hpp"

#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "shared/Common/Files/File.hpp"

namespace tonewright {

using platform::print;

namespace {

std::string_view textOf(bool value) {
    return value ? "true" : "false";
}

} // namespace

bool LitterTest::operator()(std::string_view subpath) {
    if (!_last.empty() && subpath.starts_with(_last)) return true;
    const std::string_view name = subpath.substr(subpath.rfind('/') + 1);
    if (name.find("__MACOSX") == std::string_view::npos && name.find(".DS_Store") == std::string_view::npos) {
        return false;
    }
    _last.assign(subpath).append("/");
    return true;
}

FileEnumerator::FileEnumerator()
    : defaultFileManager(platform::FileManager::defaultManager())
    , fileTree(std::make_shared<FileTree>()) {
    fileManager.setDelegate(this);
}

FileEnumerator::~FileEnumerator() {
    fileManager.setDelegate(nullptr);
}

FileEnumerator& FileEnumerator::shared() {
    static auto* instance = new FileEnumerator; // never destroyed, because statics may use it
    return *instance;
}

void FileEnumerator::enumerate(const std::string& path) {
    _hasReadErrors = false;
    if (!fileManager.changeCurrentDirectoryPath(path)) {
        print("Error: Could not set current path '" + path + "' for the file manager.");
        return;
    }
    fileTree->basePath = fileManager.currentDirectoryPath();
    const auto enumerator = fileManager.enumeratorAtPath(path);
    if (!enumerator) platform::fatal(platform::UnexpectedNilUnwrapping);
    createRootNode(path);
    if (!fileTree->root) platform::fatal(platform::UnexpectedNil);
    auto attributes = enumerator->directoryAttributes();
    if (!attributes) platform::fatal(platform::UnexpectedNilUnwrapping);
    fileTree->root->setAttributes(std::move(*attributes));

    LitterTest isLitter;
    while (true) {
        const auto subpath = enumerator->nextObject();
        if (!subpath) {
            // The last line of every complete scan.
            print("WARNUNG:  Unbekannter Typ des Dateiobjektes oder <nil>.");
            break;
        }
        if (isLitter(*subpath)) {
            const auto url = platform::URL::fileURLWithPath(std::string(path).append("/").append(*subpath));
            auto& manager = platform::FileManager::defaultManager();
            if (const auto error = manager.removeItemAtURL(url, *enumerator)) {
                print(error->localizedDescription());
            }
            continue;
        }
        createChildNode(*subpath, path, *enumerator);
        File& node = *fileTree->filelist.back();
        const std::int64_t depth = enumerator->level() - 1;
        if (depth != node._indent()) {
            print("WARNUNG: Die Verschachtelungstiefe unterscheidet sich! ( indent: " +
                  std::to_string(node._indent()) + " / level: " + std::to_string(depth) + " )");
        }
        node.set_indent(depth);
    }
    fileTree->clearList();
    reportReadErrors(*enumerator);
}

void FileEnumerator::reportReadErrors(const platform::DirectoryEnumerator& enumerator) {
    _hasReadErrors = !enumerator.readErrors().empty();
    for (const platform::Error& error : enumerator.readErrors()) platform::warn(error.localizedDescription());
}

void FileEnumerator::createRootNode(const std::string& path) {
    bool isDirectory = false;
    const bool exists = fileManager.fileExistsAtPath(path, isDirectory);
    if (!isDirectory) platform::fatal("Root muss ein Ordner sein.");
    const auto folder = std::make_shared<Folder>();
    folder->set_indent(0);
    folder->set_expanded(true);
    folder->setParent(nullptr);
    folder->setRootpath(path);
    folder->setExists(exists);
    folder->setIsDirectory(isDirectory);
    folder->setIsReadeble(fileManager.isReadableFileAtPath(path));
    folder->setIsWritable(fileManager.isWritableFileAtPath(path));
    folder->setIsExecutable(fileManager.isExecutableFileAtPath(path));
    folder->setIsDeleteble(fileManager.isDeletableFileAtPath(path));
    auto attributes = fileManager.attributesOfItemAtPath(path);
    if (!attributes) {
        print(attributes.error().localizedDescription());
        return;
    }
    folder->setAttributes(std::move(attributes.value()));
    folder->setUid(folder->getSystemFileNumber());
    fileTree->root = folder;
}

// The facts come from the enumerator, which queries its open directory, instead of from the file manager.
void FileEnumerator::createChildNode(std::string_view subpath, const std::string& path,
                                     platform::DirectoryEnumerator& enumerator) {
    platform::FileFacts facts = enumerator.facts();
    const std::shared_ptr<File> node =
        facts.isDirectory ? std::make_shared<Folder>() : std::make_shared<File>();
    node->setExists(facts.exists);
    node->setIsDirectory(facts.isDirectory);
    node->setRootpath(path);
    node->setSubpath(subpath);
    fileTree->findParent(node);
    if (const auto& parent = node->parent()) {
        auto& siblings = parent->asFolder()->children;
        if (siblings.size() == 1) siblings.reserve(enumerator.siblingCount());
    }
    node->setIsReadeble(facts.isReadable);
    node->setIsWritable(facts.isWritable);
    node->setIsExecutable(facts.isExecutable);
    node->setIsDeleteble(facts.isDeletable);
    if (facts.error) {
        print(facts.error->description());
    } else {
        node->setAttributes(std::move(facts.attributes));
    }
    node->setUid(node->getSystemFileNumber());
    fileTree->filelist.push_back(node);
}

void FileEnumerator::examineFile(const std::string& name, const std::string& path) {
    const std::string full = path + "/" + name;
    bool isDirectory = false;
    print(" ");
    print(name);
    print(full);
    print(std::string(" - file exists: ").append(textOf(fileManager.fileExistsAtPath(full))));
    const bool exists = fileManager.fileExistsAtPath(full, isDirectory);
    print(std::string(" - file exist / is directory: ")
              .append(textOf(exists))
              .append(" / ")
              .append(textOf(isDirectory)));
    // The labels of the next two lines are swapped, but readers of the report are used to them.
    print(std::string(" - file is writable: ").append(textOf(fileManager.isReadableFileAtPath(full))));
    print(std::string(" - file is readeble: ").append(textOf(fileManager.isWritableFileAtPath(full))));
    print(std::string(" - file is executable: ").append(textOf(fileManager.isExecutableFileAtPath(full))));
    print(std::string(" - file is deletable: ").append(textOf(fileManager.isDeletableFileAtPath(full))));
    const auto attributes = fileManager.attributesOfItemAtPath(full);
    print(attributes ? attributes.value().description() : attributes.error().description());
}

std::string FileEnumerator::formatNumber(std::int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// NOLINTBEGIN(readability-named-parameter): the results do not depend on the arguments
using platform::Error;
using platform::FileManager;
using platform::URL;

bool FileEnumerator::fileManagerShouldRemoveItemAtURL(FileManager&, const URL&) {
    return true;
}
bool FileEnumerator::fileManagerShouldRemoveItemAtPath(FileManager&, const std::string&) {
    return true;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorRemovingItemAtURL(FileManager&, const Error&,
                                                                         const URL&) {
    return false;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorRemovingItemAtPath(FileManager&, const Error&,
                                                                          const std::string&) {
    return false;
}
bool FileEnumerator::fileManagerShouldCopyItemAtURL(FileManager&, const URL&, const URL&) {
    return true;
}
bool FileEnumerator::fileManagerShouldCopyItemAtPath(FileManager&, const std::string&, const std::string&) {
    return true;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorCopyingItemAtURL(FileManager&, const Error&,
                                                                        const URL&, const URL&) {
    return false;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorCopyingItemAtPath(FileManager&, const Error&,
                                                                         const std::string&,
                                                                         const std::string&) {
    return false;
}
bool FileEnumerator::fileManagerShouldLinkItemAtURL(FileManager&, const URL&, const URL&) {
    return true;
}
bool FileEnumerator::fileManagerShouldLinkItemAtPath(FileManager&, const std::string&, const std::string&) {
    return true;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorLinkingItemAtURL(FileManager&, const Error&,
                                                                        const URL&, const URL&) {
    return false;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorLinkingItemAtPath(FileManager&, const Error&,
                                                                         const std::string&,
                                                                         const std::string&) {
    return false;
}
bool FileEnumerator::fileManagerShouldMoveItemAtURL(FileManager&, const URL&, const URL&) {
    return true;
}
bool FileEnumerator::fileManagerShouldMoveItemAtPath(FileManager&, const std::string&, const std::string&) {
    return true;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorMovingItemAtURL(FileManager&, const Error&, const URL&,
                                                                       const URL&) {
    return false;
}
bool FileEnumerator::fileManagerShouldProceedAfterErrorMovingItemAtPath(FileManager&, const Error&,
                                                                        const std::string&,
                                                                        const std::string&) {
    return false;
}
// NOLINTEND(readability-named-parameter)

} // namespace tonewright

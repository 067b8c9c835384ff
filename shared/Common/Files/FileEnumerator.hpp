// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Scans a directory into a tree, removing archive and folder-view litter from the disk on the way; reports on
// single paths; downloads a file into the folder that the maker's programs share; reports where the
// application's files are. All results are lines on standard output and the tree. One thread at a time,
// except that a download ends on its session's queue.
#pragma once

#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/product.hpp"
#include "shared/Common/Files/FileTree.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace platform {
class URLSessionTask;
}

namespace tonewright {

/// The folder that the maker's programs share.
inline constexpr std::string_view ApplicationGroupIdentifier = platform::product::GroupIdentifier;

enum class DownloadOutcome {
    Stored,    // at its destination
    NotStored, // the source is not of a kind that is stored
    Failed,    // a line gave the reason
};

/// The observer of a download; both may be absent.
struct DownloadObserver {
    /// Called with the task right after it was started, on the main queue.
    std::function<void(const std::shared_ptr<platform::URLSessionTask>& task)> onBegan;
    /// Called after the download's last line, when its temporary file has been removed, on the session's
    /// queue.
    std::function<void(DownloadOutcome outcome)> onEnded;
};

class FileEnumerator : public platform::FileManagerDelegate {
  public:
    platform::FileManager& defaultFileManager; // the process's
    platform::FileManager fileManager;         // its own, with this as the delegate
    std::shared_ptr<FileTree> fileTree;

    FileEnumerator();
    ~FileEnumerator() override;
    FileEnumerator(const FileEnumerator&) = delete;
    FileEnumerator& operator=(const FileEnumerator&) = delete;

    /// Returns the one instance of the process, created at the first call.
    [[nodiscard]] static FileEnumerator& shared();

    /// Scans the directory `path`, which becomes the current directory, into `fileTree`. Items with
    /// "__MACOSX" or ".DS_Store" in their path below it are deleted instead of listed. If a directory is
    /// damaged, the names that cannot be read are missing, and a line on standard error reports it.
    virtual void enumerate(const std::string& path);
    /// Returns whether the last scan or report met a directory that could not be read completely.
    [[nodiscard]] bool hasReadErrors() const noexcept { return _hasReadErrors; }
    /// Prints what the file manager returns for `path`/`name`.
    void examineFile(const std::string& name, const std::string& path);
    /// Returns the decimal text, with a leading "0" below 10.
    [[nodiscard]] static std::string formatNumber(std::int64_t number);
    /// Fetches `url` into "download.zip" in the shared folder; starts one second later on the main queue.
    void downloadFile(const platform::URL& url);
    /// Prints where the application's files are.
    void testFileManager();

    /// Does what `downloadFile` does, and reports it to `observer`.
    static void startDownload(const platform::URL& url, const DownloadObserver& observer);

    // The answers: every operation is allowed, none continues after an error.
    bool fileManagerShouldRemoveItemAtURL(platform::FileManager&, const platform::URL&) override;
    bool fileManagerShouldRemoveItemAtPath(platform::FileManager&, const std::string&) override;
    bool fileManagerShouldProceedAfterErrorRemovingItemAtURL(platform::FileManager&, const platform::Error&,
                                                             const platform::URL&) override;
    bool fileManagerShouldProceedAfterErrorRemovingItemAtPath(platform::FileManager&, const platform::Error&,
                                                              const std::string&) override;
    bool fileManagerShouldCopyItemAtURL(platform::FileManager&, const platform::URL&,
                                        const platform::URL& toURL) override;
    bool fileManagerShouldCopyItemAtPath(platform::FileManager&, const std::string&,
                                         const std::string& toPath) override;
    bool fileManagerShouldProceedAfterErrorCopyingItemAtURL(platform::FileManager&, const platform::Error&,
                                                            const platform::URL&,
                                                            const platform::URL& toURL) override;
    bool fileManagerShouldProceedAfterErrorCopyingItemAtPath(platform::FileManager&, const platform::Error&,
                                                             const std::string&,
                                                             const std::string& toPath) override;
    bool fileManagerShouldLinkItemAtURL(platform::FileManager&, const platform::URL&,
                                        const platform::URL& toURL) override;
    bool fileManagerShouldLinkItemAtPath(platform::FileManager&, const std::string&,
                                         const std::string& toPath) override;
    bool fileManagerShouldProceedAfterErrorLinkingItemAtURL(platform::FileManager&, const platform::Error&,
                                                            const platform::URL&,
                                                            const platform::URL& toURL) override;
    bool fileManagerShouldProceedAfterErrorLinkingItemAtPath(platform::FileManager&, const platform::Error&,
                                                             const std::string&,
                                                             const std::string& toPath) override;
    bool fileManagerShouldMoveItemAtURL(platform::FileManager&, const platform::URL&,
                                        const platform::URL& toURL) override;
    bool fileManagerShouldMoveItemAtPath(platform::FileManager&, const std::string&,
                                         const std::string& toPath) override;
    bool fileManagerShouldProceedAfterErrorMovingItemAtURL(platform::FileManager&, const platform::Error&,
                                                           const platform::URL&,
                                                           const platform::URL& toURL) override;
    bool fileManagerShouldProceedAfterErrorMovingItemAtPath(platform::FileManager&, const platform::Error&,
                                                            const std::string&,
                                                            const std::string& toPath) override;

  private:
    void createRootNode(const std::string& path);
    void createChildNode(std::string_view subpath, const std::string& path,
                         platform::DirectoryEnumerator& enumerator);
    void printDirectory(std::string_view label, platform::SearchPathDirectory directory) const;
    void reportReadErrors(const platform::DirectoryEnumerator& enumerator);

    bool _hasReadErrors = false;
};

/// Tells, for the paths of a walk in their order, which items a scan deletes: those whose path contains
/// "__MACOSX" or ".DS_Store". Neither text contains a "/", so it is found in the last component or in a
/// parent's.
class LitterTest {
  public:
    [[nodiscard]] bool operator()(std::string_view subpath);

  private:
    std::string _last; // the last litter found, with a "/"
};

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Scans a directory into a tree and deletes litter of archive programs and file managers ("__MACOSX",
// ".DS_Store") on the way. Prints reports about single paths and about the locations of the application's
// files. Downloads a file into the directory that programs of the same maker share. The results are the tree
// and lines on standard output. One thread at a time, except that a download ends on its session's queue.
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

/// The identifier of the directory that programs of the same maker share.
inline constexpr std::string_view ApplicationGroupIdentifier = platform::product::GroupIdentifier;

enum class DownloadOutcome {
    Stored,    // the file is at its destination
    NotStored, // the response is not an HTTP response
    Failed,    // the reason has been printed
};

/// Functions that are called during a download. Both may be empty.
struct DownloadObserver {
    /// Called with the task right after it has been started, on the main queue.
    std::function<void(const std::shared_ptr<platform::URLSessionTask>& task)> onBegan;
    /// Called after the last line of the download has been printed and its temporary file has been removed,
    /// on the session's queue.
    std::function<void(DownloadOutcome outcome)> onEnded;
};

class FileEnumerator : public platform::FileManagerDelegate {
  public:
    platform::FileManager& defaultFileManager; // the file manager of the process
    platform::FileManager fileManager;         // a file manager whose delegate is this object
    std::shared_ptr<FileTree> fileTree;

    FileEnumerator();
    ~FileEnumerator() override;
    FileEnumerator(const FileEnumerator&) = delete;
    FileEnumerator& operator=(const FileEnumerator&) = delete;

    /// Returns the shared instance, which the first call creates.
    [[nodiscard]] static FileEnumerator& shared();

    /// Scans the directory `path` into `fileTree` and makes `path` the current directory. Items whose path
    /// below `path` contains "__MACOSX" or ".DS_Store" are deleted instead of listed. If a directory cannot
    /// be read completely, the remaining names are missing, and a line on standard error reports that.
    virtual void enumerate(const std::string& path);
    /// Returns whether a directory could not be read completely by the last scan or report.
    [[nodiscard]] bool hasReadErrors() const noexcept { return _hasReadErrors; }
    /// Prints what the file manager returns for `path`/`name`.
    void examineFile(const std::string& name, const std::string& path);
    /// Returns `number` in decimal, with a leading "0" if it is less than 10.
    [[nodiscard]] static std::string formatNumber(std::int64_t number);
    /// Downloads `url` to "download.zip" in the shared directory. Starts one second later on the main queue.
    void downloadFile(const platform::URL& url);
    /// Prints the locations of the application's files.
    void testFileManager();

    /// Does the same as `downloadFile` and calls the functions of `observer`.
    static void startDownload(const platform::URL& url, const DownloadObserver& observer);

    // The decisions as the delegate: every operation is allowed, and every error ends the operation.
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

/// Decides which items a scan deletes: those whose path contains "__MACOSX" or ".DS_Store". Call it for all
/// items in the order of the walk. Only the last component of a path is searched. Items inside litter
/// are recognised because their path starts with the path of the litter.
class LitterTest {
  public:
    [[nodiscard]] bool operator()(std::string_view subpath);

  private:
    std::string _last; // path of the last litter found, with a "/" at the end
};

} // namespace tonewright

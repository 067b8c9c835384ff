// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decides whether the file manager removes, copies, moves or links an item, and whether an operation
// continues after an error. Called on the thread of the operation.
#pragma once

#include "platform/foundation/Error.hpp"
#include "platform/foundation/URL.hpp"

#include <string>

namespace platform {

class FileManager;

/// By default, every operation is allowed and every error ends the operation.
class FileManagerDelegate {
  public:
    virtual ~FileManagerDelegate() = default;

    virtual bool fileManagerShouldRemoveItemAtURL(FileManager&, const URL&) { return true; }
    virtual bool fileManagerShouldRemoveItemAtPath(FileManager&, const std::string&) { return true; }
    virtual bool fileManagerShouldProceedAfterErrorRemovingItemAtURL(FileManager&, const Error&, const URL&) {
        return false;
    }
    virtual bool fileManagerShouldProceedAfterErrorRemovingItemAtPath(FileManager&, const Error&,
                                                                      const std::string&) {
        return false;
    }

    virtual bool fileManagerShouldCopyItemAtURL(FileManager&, const URL&, const URL& /*toURL*/) {
        return true;
    }
    virtual bool fileManagerShouldCopyItemAtPath(FileManager&, const std::string&,
                                                 const std::string& /*toPath*/) {
        return true;
    }
    virtual bool fileManagerShouldProceedAfterErrorCopyingItemAtURL(FileManager&, const Error&, const URL&,
                                                                    const URL& /*toURL*/) {
        return false;
    }
    virtual bool fileManagerShouldProceedAfterErrorCopyingItemAtPath(FileManager&, const Error&,
                                                                     const std::string&,
                                                                     const std::string& /*toPath*/) {
        return false;
    }

    virtual bool fileManagerShouldLinkItemAtURL(FileManager&, const URL&, const URL& /*toURL*/) {
        return true;
    }
    virtual bool fileManagerShouldLinkItemAtPath(FileManager&, const std::string&,
                                                 const std::string& /*toPath*/) {
        return true;
    }
    virtual bool fileManagerShouldProceedAfterErrorLinkingItemAtURL(FileManager&, const Error&, const URL&,
                                                                    const URL& /*toURL*/) {
        return false;
    }
    virtual bool fileManagerShouldProceedAfterErrorLinkingItemAtPath(FileManager&, const Error&,
                                                                     const std::string&,
                                                                     const std::string& /*toPath*/) {
        return false;
    }

    virtual bool fileManagerShouldMoveItemAtURL(FileManager&, const URL&, const URL& /*toURL*/) {
        return true;
    }
    virtual bool fileManagerShouldMoveItemAtPath(FileManager&, const std::string&,
                                                 const std::string& /*toPath*/) {
        return true;
    }
    virtual bool fileManagerShouldProceedAfterErrorMovingItemAtURL(FileManager&, const Error&, const URL&,
                                                                   const URL& /*toURL*/) {
        return false;
    }
    virtual bool fileManagerShouldProceedAfterErrorMovingItemAtPath(FileManager&, const Error&,
                                                                    const std::string&,
                                                                    const std::string& /*toPath*/) {
        return false;
    }
};

} // namespace platform

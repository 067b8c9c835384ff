// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/FileManager.hpp"

#include "platform/foundation/userDirectories.hpp"

namespace platform {

FileManager& FileManager::defaultManager() {
    static FileManager manager;
    return manager;
}

std::vector<URL> FileManager::URLsForDirectory(SearchPathDirectory, SearchPathDomain) const {
    return {URL::fileURLWithPath(userDirectory("DOCUMENTS", "Documents"), true)};
}

} // namespace platform

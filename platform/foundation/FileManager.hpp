// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The system's file operations under one roof. Any thread.
#pragma once

#include "platform/foundation/URL.hpp"

#include <vector>

namespace platform {

enum class SearchPathDirectory { Document };
enum class SearchPathDomain { User };

class FileManager {
  public:
    /// Give the process's file manager.
    [[nodiscard]] static FileManager& defaultManager();

    /// Give the places of a standard directory, never none: for documents, the user's documents directory of
    /// the desktop standard (xdg-user-dirs), else `Documents` in the home directory. They need not exist.
    [[nodiscard]] std::vector<URL> URLsForDirectory(SearchPathDirectory directory,
                                                    SearchPathDomain inDomains) const;
};

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Copies one item that is not a directory.
#pragma once

#include "platform/foundation/detail/FileStatus.hpp"

namespace platform::detail {

/// Copies the item `fromName`, whose status is `status`, in the open directory `from` to the new name
/// `toName` in the open directory `to`. A regular file shares its data with the original if the file system
/// supports that. A link is copied as a link, unless it refers to an open file that has been deleted, which
/// is copied as a file. A FIFO, socket or device is copied as such. The copy appears complete or not at all.
/// Returns 0 or the error number.
[[nodiscard]] int copyFile(int from, const char* fromName, const FileStatus& status, int to,
                           const char* toName);

/// Copies the permissions, the modification date and the extended attributes of `from` to the open file or
/// directory `to`.
void copyMetadata(int from, const FileStatus& status, int to) noexcept;

} // namespace platform::detail

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Copying of one item that is not a directory.
#pragma once

#include "platform/foundation/detail/FileStatus.hpp"

namespace platform::detail {

/// Copies the item `fromName` of the open directory `from`, whose status is `status`, to the new name
/// `toName` in the open directory `to`: a regular file with its bytes, shared with the original where the
/// file system can; a link as a link, or as its file if it names an open file of a process that has no other
/// name; a FIFO, socket or device as such. It appears under its name complete or not at all. Returns 0 or the
/// error number.
[[nodiscard]] int copyFile(int from, const char* fromName, const FileStatus& status, int to,
                           const char* toName);

/// Copies the permissions, dates and extended attributes of `from` to the open file or directory `to`.
void copyMetadata(int from, const FileStatus& status, int to) noexcept;

} // namespace platform::detail

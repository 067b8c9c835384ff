// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The chain of open directories from a root down to where a walk stands. Nothing on it is ever reached
// through a link or a rebuilt path. Beyond a few hundred levels, and when the process runs out of
// descriptors, the outer levels give theirs up and are opened again on the way back. One thread. Private to
// platform/foundation.
#pragma once

#include "platform/foundation/detail/Descriptor.hpp"

#include <string>
#include <vector>

namespace platform::detail {

class DirectoryStack {
  public:
    /// Begin at an open directory that `path` names.
    DirectoryStack(Descriptor root, std::string path);

    /// Open the directory `name` of the innermost level, which must not be a link, and stand in it. Gives 0
    /// or the error number.
    [[nodiscard]] int enter(const char* name);
    /// Go back to the level outside; there must be one.
    void leave();

    [[nodiscard]] std::size_t depth() const noexcept { return _levels.size(); }
    /// Give the innermost directory; -1 when it had been given up and is gone from its place.
    [[nodiscard]] int descriptor() const noexcept { return _levels.back().descriptor.get(); }
    /// Close the outermost open level that is not the innermost; false when there is none.
    bool giveUpOutermost();

  private:
    struct Level {
        Descriptor descriptor;
        std::string name;         // the root: its path
        unsigned long device = 0; // these two are known once the level was given up
        unsigned long fileNumber = 0;
    };
    [[nodiscard]] Descriptor openAgain(int inner);
    [[nodiscard]] Descriptor openFromRoot();

    std::vector<Level> _levels;
    std::size_t _firstOpen = 0; // every level outside it has given up its descriptor
};

} // namespace platform::detail

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The chain of open directories from a root down to the position of a walk, with the names read from each.
// Walking, removing and copying all use it: nothing below the root is reached through a link or by a path.
// The root stays open. Beyond a few hundred levels, and when the process runs out of descriptors, the outer
// levels below the root close theirs and are opened again on the way back. One thread.
#pragma once

#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/detail/DirectoryListing.hpp"

#include <cstdint>
#include <deque>
#include <string>

namespace platform::detail {

/// Returns whether an operation failed for lack of a descriptor.
[[nodiscard]] bool isOutOfDescriptors(int error) noexcept;

/// Whether a walk may enter a directory that is on another device, or mounted, in its parent.
enum class Crossing { Allowed, Refused };

class DirectoryStack {
  public:
    /// Starts at an open directory.
    explicit DirectoryStack(Descriptor root);

    /// Opens the directory `name` of the innermost level, which must not be a link, and enters it. Returns 0
    /// or the error number: EXDEV for a crossing that is refused, ESTALE if the innermost level no longer
    /// exists.
    [[nodiscard]] int enter(const char* name, Crossing crossing = Crossing::Allowed);
    /// Reads the names of the innermost directory. Returns 0 or the error number; the names read until then
    /// are kept.
    [[nodiscard]] int list() { return _top->listing.read(descriptor()); }
    /// Goes back to the parent level; there must be one.
    void leave();

    [[nodiscard]] std::size_t depth() const noexcept { return _depth; }
    /// Returns the innermost directory, or -1 if it had been closed and is no longer at its place.
    [[nodiscard]] int descriptor() const noexcept { return _top->descriptor.get(); }
    /// Returns the name by which the innermost directory was entered; empty for the root.
    [[nodiscard]] const std::string& name() const noexcept { return _top->name; }
    /// Returns the names of the innermost directory, as the last `list` in it left them.
    [[nodiscard]] DirectoryListing& listing() noexcept { return _top->listing; }
    [[nodiscard]] const DirectoryListing& listing() const noexcept { return _top->listing; }
    /// Returns whether the current name of the innermost listing is a directory's.
    [[nodiscard]] bool standsOnDirectory() const;
    /// Closes the outermost open level between the root and the innermost; false when there is none.
    bool giveUpOutermost();

  private:
    // A file's numbers, as far as they are known.
    struct Place {
        std::uint64_t device = 0;
        std::uint64_t mount = 0; // 0: the kernel does not tell
        std::uint64_t fileNumber = 0;
        bool isKnown = false;
    };
    // Levels, with their buffers, are kept for the next directory of the same depth.
    struct Level {
        Descriptor descriptor;
        std::string name;
        Place place;
        DirectoryListing listing;
    };
    [[nodiscard]] static int findPlace(Level& level);
    [[nodiscard]] static bool isAt(const Descriptor& opened, const Level& level);
    [[nodiscard]] int openNext(const char* name, Descriptor& opened);
    [[nodiscard]] Descriptor openAgain(int inner) const;
    [[nodiscard]] Descriptor openFromRoot() const;

    std::deque<Level> _levels; // at least as many as `_depth`
    std::size_t _depth = 1;
    Level* _top = nullptr;      // the innermost level
    std::size_t _firstOpen = 1; // every level between it and the root has given up its descriptor
};

} // namespace platform::detail

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The chain of open directories from a root down to the position of a walk, with the names read from each
// directory. Walking, removing and copying use it, so that nothing below the root is accessed through a link
// or by its path. The root stays open. Beyond a few hundred levels, or when the process runs out of
// descriptors, the outermost directories below the root are closed, and opened again when the walk returns to
// them. One thread.
#pragma once

#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/detail/DirectoryListing.hpp"

#include <cstdint>
#include <deque>
#include <string>

namespace platform::detail {

/// Returns whether `error` means that there are no free descriptors.
[[nodiscard]] bool isOutOfDescriptors(int error) noexcept;

/// Whether a walk may enter a directory that is on another device or mount than its parent.
enum class Crossing { Allowed, Refused };

class DirectoryStack {
  public:
    /// Starts at an open directory.
    explicit DirectoryStack(Descriptor root);

    /// Opens the directory `name` in the innermost directory and enters it. `name` must not be a link.
    /// Returns 0 or the error number: EXDEV for a refused crossing, ESTALE if the innermost directory is not
    /// open (see descriptor()).
    [[nodiscard]] int enter(const char* name, Crossing crossing = Crossing::Allowed);
    /// Reads the names in the innermost directory. Returns 0 or the error number. After an error, the names
    /// read so far are available.
    [[nodiscard]] int list() { return _top->listing.read(descriptor()); }
    /// Returns to the parent directory. The innermost directory must not be the root.
    void leave();

    [[nodiscard]] std::size_t depth() const noexcept { return _depth; }
    /// Returns the descriptor of the innermost directory, or -1 if the directory could not be opened again.
    [[nodiscard]] int descriptor() const noexcept { return _top->descriptor.get(); }
    /// Returns the name with which the innermost directory was entered; empty for the root.
    [[nodiscard]] const std::string& name() const noexcept { return _top->name; }
    /// Returns the names that the last `list` has read from the innermost directory.
    [[nodiscard]] DirectoryListing& listing() noexcept { return _top->listing; }
    [[nodiscard]] const DirectoryListing& listing() const noexcept { return _top->listing; }
    /// Returns whether the current item of the innermost listing is a directory.
    [[nodiscard]] bool standsOnDirectory() const;
    /// Closes the outermost open directory between the root and the innermost directory. Returns false if
    /// there is none.
    bool giveUpOutermost();

  private:
    // The numbers that identify a directory.
    struct Place {
        std::uint64_t device = 0;
        std::uint64_t mount = 0; // 0: not reported by the kernel
        std::uint64_t fileNumber = 0;
        bool isKnown = false;
    };
    // Levels are reused, with their buffers, for the next directory at the same depth.
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

    std::deque<Level> _levels; // never shorter than `_depth`
    std::size_t _depth = 1;
    Level* _top = nullptr;      // the innermost level
    std::size_t _firstOpen = 1; // all levels between the root and this index are closed
};

} // namespace platform::detail

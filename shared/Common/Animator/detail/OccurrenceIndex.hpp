// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An index of the positions of each animator in a list. Lists first search by scanning. When the scans of a
// list have cost about as much as building the index, the list builds the index and uses it from then on. The
// time for any number of searches is therefore proportional to the length of the list and the number of
// searches.
#pragma once

#include <cstddef>
#include <limits>
#include <unordered_map>
#include <vector>

namespace tonewright {

class Animator;

class OccurrenceIndex {
  public:
    static constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

    /// Reserves space for a list of `count` entries.
    explicit OccurrenceIndex(std::size_t count);
    /// Records that `item` is at the next position; `nullptr` records a gap.
    void append(const Animator* item);
    /// Returns the first position of `item`, or None.
    [[nodiscard]] std::size_t first(const Animator& item) const;
    /// Removes the first position of `item`, which must be in the index.
    void removeFirst(const Animator& item);

  private:
    struct Occurrences {
        std::size_t first;
        std::size_t last;
    };
    std::unordered_map<const Animator*, Occurrences> _occurrences;
    std::vector<std::size_t> _next; // for each position, the next position of the same animator
};

/// Counts the work of scans since the last `reset`, to decide when a list needs an index.
class ScanBudget {
  public:
    /// Returns whether the scans of a list with `count` entries have cost about as much as building an index.
    [[nodiscard]] bool exceeded(std::size_t count) const noexcept { return _looked > 4 * count + 64; }
    void spend(std::size_t looked) noexcept { _looked += looked; }
    void reset() noexcept { _looked = 0; }

  private:
    std::size_t _looked = 0;
};

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The positions of each animator in a list: the fallback of the lists' searches. A search by identity is a
// scan as long as scans are cheap; a list whose scans have cost more than one pass over it builds this index
// and uses it from then on, so that any number of searches costs time in proportion to the list.
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
    /// Forgets the first position of `item`, which must have one.
    void removeFirst(const Animator& item);

  private:
    struct Occurrences {
        std::size_t first;
        std::size_t last;
    };
    std::unordered_map<const Animator*, Occurrences> _occurrences;
    std::vector<std::size_t> _next; // for each position, the next one of the same animator
};

/// Decides between scan and index by the work that scans have done since the list was last in order.
class ScanBudget {
  public:
    /// Returns whether scans of a list of `count` entries have cost as much as an index would.
    [[nodiscard]] bool exceeded(std::size_t count) const noexcept { return _looked > 4 * count + 64; }
    void spend(std::size_t looked) noexcept { _looked += looked; }
    void reset() noexcept { _looked = 0; }

  private:
    std::size_t _looked = 0;
};

} // namespace tonewright

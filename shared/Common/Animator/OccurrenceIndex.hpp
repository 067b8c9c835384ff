// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where in a list each animator stands: the fallback of the lists' searches. A search by identity is a scan
// as long as scans are cheap; a list whose scans have cost more than a pass over it builds this index and
// asks it from then on, so that any number of searches costs time in proportion to the list. Internal to the
// animation engine.
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

    /// Makes room for a list of `count` entries.
    explicit OccurrenceIndex(std::size_t count);
    /// Note that `item` stands at the next position; `nullptr` notes a gap.
    void append(const Animator* item);
    /// Returns the first position of `item`, or None.
    [[nodiscard]] std::size_t first(const Animator& item) const;
    /// Forgets the first position of `item`, which has one.
    void removeFirst(const Animator& item);

  private:
    struct Occurrences {
        std::size_t first;
        std::size_t last;
    };
    std::unordered_map<const Animator*, Occurrences> _occurrences;
    std::vector<std::size_t> _next; // of each position: the next one of the same animator
};

/// Decides between scan and index: the work that scans have done since the list was last in order.
class ScanBudget {
  public:
    /// Returns whether scans of a list of `count` entries have used up what an index costs.
    [[nodiscard]] bool exceeded(std::size_t count) const noexcept { return _looked > 4 * count + 64; }
    void spend(std::size_t looked) noexcept { _looked += looked; }
    void reset() noexcept { _looked = 0; }

  private:
    std::size_t _looked = 0;
};

} // namespace tonewright

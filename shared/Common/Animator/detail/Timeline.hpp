// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A sequencer's members in the order of their start frames, equal ones in the order in which they were added.
//
// The list behaves as if every addition sorted it by the members' present start frames, and as if every
// measurement looked at every member. It does neither: additions are collected and sorted together when the
// order is first needed, and what has been measured is not measured again. Two things can invalidate it from
// outside, because animators may be members of several timelines: another timeline writes a member's start
// frame, or somebody sets a member up again with more frames. Two counters tell all timelines that such a
// thing has happened somewhere; a timeline that sees a changed counter looks at its members again.
#pragma once

#include "shared/Common/Animator/Animator.hpp"
#include "shared/Common/Animator/detail/OccurrenceIndex.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace tonewright {

class Timeline {
  public:
    /// Marks an animator that has been placed in more than one timeline.
    static constexpr std::uint32_t Several = std::numeric_limits<std::uint32_t>::max();

    Timeline();
    ~Timeline();
    Timeline(const Timeline&) = delete;
    Timeline& operator=(const Timeline&) = delete;

    /// Tells all timelines that the end of a placed animator may be later than when it was measured.
    static void lengthChanged() noexcept;

    /// Writes `startFrame` into `item` and places it.
    void add(std::shared_ptr<Animator> item, std::int64_t startFrame);
    /// Removes the first entry that is `item`; returns whether there was one.
    [[nodiscard]] bool remove(const Animator& item);
    void clear();
    [[nodiscard]] std::int64_t count() const noexcept { return static_cast<std::int64_t>(_live); }
    /// Returns the larger of `end` and the latest end (start frame and frames) of all members; overflow is
    /// fatal.
    [[nodiscard]] std::int64_t latestEnd(std::int64_t end);

    /// Puts every member in order, for `at` and `liesAhead`. Holds until the list is changed.
    void putInOrder();
    [[nodiscard]] bool isInOrder() const noexcept {
        return _live == _entries.size() && _sorted == _entries.size();
    }
    /// Returns all members, in order.
    [[nodiscard]] std::vector<std::shared_ptr<Animator>> items();
    /// Returns the member at `index`, which is less than the count.
    [[nodiscard]] const std::shared_ptr<Animator>& at(std::int64_t index) const {
        return _entries[static_cast<std::size_t>(index)].animator;
    }
    /// Returns whether the member at `index` and all after it are known to start after `frame`.
    [[nodiscard]] bool liesAhead(std::int64_t index, std::int64_t frame) const noexcept {
        return isTrusted() && _entries[static_cast<std::size_t>(index)].startFrame > frame;
    }

  private:
    struct Entry {
        std::int64_t startFrame; // the member's when the list was last sorted; it may have changed since
        std::shared_ptr<Animator> animator; // null: a gap
    };

    static void leave(Animator& animator);
    [[nodiscard]] bool isTrusted() const noexcept;
    [[nodiscard]] std::size_t find(const Animator& item);
    void sortPending();
    void sortAnew();
    void compact();
    void dropIndex();

    std::vector<Entry> _entries;
    std::size_t _live = 0;   // entries that are not gaps
    std::size_t _sorted = 0; // the number of entries, from the front, that are in order
    std::uint64_t _starts;   // the counter of start frames when the order was last known to be right
    std::uint64_t _lengths;  // the counter of lengths when all but `_unmeasured` were measured
    const Animator* _unmeasured = nullptr; // the only one added since
    bool _measureAll = false;
    std::uint32_t _number;
    ScanBudget _scans;
    std::unique_ptr<OccurrenceIndex> _index;
};

} // namespace tonewright

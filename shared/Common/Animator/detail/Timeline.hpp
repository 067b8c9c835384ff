// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The members of a sequencer, sorted by start frame. Members with equal start frames are in the order in
// which they were added.
//
// The list behaves as if each addition sorted it by the current start frames, and as if each calculation of
// the length examined all members. In fact, additions are sorted together when the order is needed, and only
// new members are examined. Two events outside the list can invalidate its results: another timeline changes
// a member's start frame, or a member is set up again with more frames. Two counters for the whole process
// record such events. A timeline that sees a changed counter examines its members again.
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

    /// Tells all timelines that an animator on a timeline may now end later than before.
    static void lengthChanged() noexcept;

    /// Stores `startFrame` in `item` and adds `item`.
    void add(std::shared_ptr<Animator> item, std::int64_t startFrame);
    /// Removes the first entry of `item` and returns whether there was one.
    [[nodiscard]] bool remove(const Animator& item);
    void clear();
    [[nodiscard]] std::int64_t count() const noexcept { return static_cast<std::int64_t>(_live); }
    /// Returns the maximum of `end` and the ends of all members (start frame plus frames). Overflow is a
    /// fatal error.
    [[nodiscard]] std::int64_t latestEnd(std::int64_t end);

    /// Sorts the members. Call before `at` and `liesAhead`, and again after each change of the list.
    void putInOrder();
    [[nodiscard]] bool isInOrder() const noexcept {
        return _live == _entries.size() && _sorted == _entries.size();
    }
    /// Returns all members, in order.
    [[nodiscard]] std::vector<std::shared_ptr<Animator>> items();
    /// Returns the member at `index`, which must be less than the count.
    [[nodiscard]] const std::shared_ptr<Animator>& at(std::int64_t index) const {
        return _entries[static_cast<std::size_t>(index)].animator;
    }
    /// Returns true if it is known that the member at `index` and all later ones start after `frame`.
    [[nodiscard]] bool liesAhead(std::int64_t index, std::int64_t frame) const noexcept {
        return isTrusted() && _entries[static_cast<std::size_t>(index)].startFrame > frame;
    }

  private:
    struct Entry {
        std::int64_t startFrame;            // of the member when the list was last sorted
        std::shared_ptr<Animator> animator; // null for a gap
    };

    static void leave(Animator& animator);
    [[nodiscard]] bool isTrusted() const noexcept;
    [[nodiscard]] std::size_t find(const Animator& item);
    void sortPending();
    void sortAnew();
    void compact();
    void dropIndex();

    std::vector<Entry> _entries;
    std::size_t _live = 0;                 // entries that are not gaps
    std::size_t _sorted = 0;               // number of entries at the front that are sorted
    std::uint64_t _starts;                 // counter of start frame changes when the order was last valid
    std::uint64_t _lengths;                // counter of length changes at the last call of `latestEnd`
    const Animator* _unmeasured = nullptr; // the only animator added since then, or null
    bool _measureAll = false;
    std::uint32_t _number;
    ScanBudget _scans;
    std::unique_ptr<OccurrenceIndex> _index;
};

} // namespace tonewright

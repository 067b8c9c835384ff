// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The ordered list of a group's members, with strong references. It may be changed during a walk over it: the
// walk visits exactly the members that were in the list at its start. The list is not copied for that;
// instead, entries that are removed during a walk become gaps, which keep their animators alive until the
// walk has ended. Counts and searches ignore gaps.
#pragma once

#include "shared/Common/Animator/detail/AnimatorInside.hpp"
#include "shared/Common/Animator/detail/OccurrenceIndex.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace tonewright {

class MemberList {
  public:
    using Members = std::vector<std::shared_ptr<Animator>>;
    static constexpr std::size_t None = OccurrenceIndex::None;

    MemberList() = default;
    ~MemberList();
    MemberList(const MemberList&) = delete;
    MemberList& operator=(const MemberList&) = delete;

    void append(std::shared_ptr<Animator> item);
    /// Removes everything.
    void clear();
    /// Removes the first entry of `item` and returns whether there was one. `hint` is the position of the
    /// current walk, if there is one.
    [[nodiscard]] bool removeFirst(const Animator& item, std::size_t hint = None);
    [[nodiscard]] bool contains(const Animator& item);
    [[nodiscard]] std::int64_t count() const noexcept { return static_cast<std::int64_t>(_live); }
    /// Returns the member at `index`, which must be less than the count. Must not be called during a walk.
    [[nodiscard]] const std::shared_ptr<Animator>& at(std::int64_t index);
    [[nodiscard]] Members items() const;

    /// Calls `visit(animator, position)` for every member that is in the list at the time of this call.
    template <class Visit>
    void walk(const Visit& visit) {
        if (_walkEnd > 0) { // a callback of a walk ticks the same group; rare, so the list is copied
            for (const auto& member : items()) visit(*member, None);
            return;
        }
        compact();
        const std::size_t end = _entries.size();
        const Walk walking(*this, end);
        // The next members. Raw pointers are safe, because entries and their animators stay during a walk.
        std::array<Animator*, Ahead> next{};
        const auto fetch = [&](std::size_t i) {
            next[i % Ahead] = _entries[i].get();
            AnimatorInside::prefetch(*next[i % Ahead]);
        };
        for (std::size_t i = 0; i < std::min(Ahead, end); ++i) fetch(i);
        for (std::size_t i = 0; i < end; ++i) {
            Animator& member = *next[i % Ahead];
            if (i + Ahead < end) fetch(i + Ahead);
            visit(member, i);
        }
    }

  private:
    // Animators are scattered in memory. Prefetching them hides most of the latency.
    static constexpr std::size_t Ahead = 32;

    struct Walk {
        Walk(MemberList& walked, std::size_t end)
            : list(walked) {
            list._walkEnd = end;
        }
        ~Walk() {
            list._walkEnd = 0;
            list.compact();
        }
        Walk(const Walk&) = delete;
        Walk& operator=(const Walk&) = delete;
        MemberList& list;
    };

    [[nodiscard]] bool isGap(std::size_t position) const {
        return position < _firstLive || (!_gaps.empty() && _gaps[position] != 0);
    }
    [[nodiscard]] std::size_t find(const Animator& item, std::size_t hint);
    void makeIndex();
    void compact();

    std::deque<std::shared_ptr<Animator>> _entries; // the members and gaps
    std::vector<std::uint8_t> _gaps;                // empty, or for each entry whether it is a gap
    std::size_t _live = 0;                          // entries that are not gaps
    std::size_t _firstLive = 0;                     // all entries before this position are gaps
    std::size_t _walkEnd = 0; // a walk visits the entries before this position; 0 without a walk
    ScanBudget _scans;
    std::unique_ptr<OccurrenceIndex> _index; // null until scans have become expensive
};

} // namespace tonewright

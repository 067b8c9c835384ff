// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The ordered list of a group's members, as shared references, which may be changed while it is walked. A
// walk visits the members that were there when it began, in order, whatever happens to the list meanwhile,
// without copying the list: entries removed during the walk stay behind as gaps, and keep their animators
// alive, until the walk has ended. Counts and searches see the list as it is at the moment.
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
    /// Removes the first entry that is `item`; returns whether there was one. `hint` is the present position
    /// of the current walk, if any.
    [[nodiscard]] bool removeFirst(const Animator& item, std::size_t hint = None);
    [[nodiscard]] bool contains(const Animator& item);
    [[nodiscard]] std::int64_t count() const noexcept { return static_cast<std::int64_t>(_live); }
    /// Returns the member at `index`, which is less than the count. Must not be called during a walk.
    [[nodiscard]] const std::shared_ptr<Animator>& at(std::int64_t index);
    [[nodiscard]] Members items() const;

    /// Calls `visit(animator, position)` for every member that is in the list now.
    template <class Visit>
    void walk(const Visit& visit) {
        if (_walkEnd > 0) { // a callback of the outer walk ticks the same group: rare, and worth a copy
            for (const auto& member : items()) visit(*member, None);
            return;
        }
        compact();
        const std::size_t end = _entries.size();
        const Walk walking(*this, end);
        // The next members. Entries stay during a walk, and with them their animators.
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
    // Animators are scattered in memory; prefetching them well ahead hides most of the latency.
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
    std::vector<std::uint8_t> _gaps;                // empty, or one mark per entry
    std::size_t _live = 0;                          // entries that are not gaps
    std::size_t _firstLive = 0;                     // all entries before are gaps
    std::size_t _walkEnd = 0; // entries before this are being walked and must stay; 0 without a walk
    ScanBudget _scans;
    std::unique_ptr<OccurrenceIndex> _index; // present once scans have become expensive
};

} // namespace tonewright

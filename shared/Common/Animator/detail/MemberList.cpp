// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/detail/MemberList.hpp"

#include <algorithm>
#include <utility>

namespace tonewright {

MemberList::~MemberList() {
    clear();
}

void MemberList::append(std::shared_ptr<Animator> item) {
    ++AnimatorInside::memberships(*item);
    AnimatorInside::noteClass(*item);
    if (_index) _index->append(item.get());
    if (!_gaps.empty()) _gaps.push_back(0);
    _entries.push_back(std::move(item));
    ++_live;
}

void MemberList::clear() {
    _index.reset();
    _scans.reset();
    if (_walkEnd == 0) {
        // The list is emptied first, because code that runs while the animators are destroyed may use the
        // list.
        auto gone = std::exchange(_entries, {});
        const auto gaps = std::exchange(_gaps, {});
        const std::size_t firstLive = std::exchange(_firstLive, 0);
        _live = 0;
        for (std::size_t i = firstLive; i < gone.size(); ++i) {
            if (!gaps.empty() && gaps[i] != 0) continue;
            --AnimatorInside::memberships(*gone[i]);
            gone[i].reset();
        }
        return;
    }
    Members gone; // members that were added during the walk
    for (std::size_t i = _firstLive; i < _entries.size(); ++i) {
        if (isGap(i)) continue;
        --AnimatorInside::memberships(*_entries[i]);
        if (i >= _walkEnd) gone.push_back(std::move(_entries[i]));
    }
    _live = 0;
    _firstLive = _entries.size();
}

bool MemberList::removeFirst(const Animator& item, std::size_t hint) {
    const std::size_t position = find(item, hint);
    if (position == None) return false;
    --AnimatorInside::memberships(*_entries[position]);
    if (_index) _index->removeFirst(item);
    --_live;
    if (position == _firstLive) {
        do ++_firstLive;
        while (_firstLive < _entries.size() && !_gaps.empty() && _gaps[_firstLive] != 0);
    } else {
        if (_gaps.empty()) _gaps.resize(_entries.size(), 0);
        _gaps[position] = 1;
    }
    if (position < _walkEnd) return true;
    const std::shared_ptr<Animator> gone =
        std::move(_entries[position]); // destroyed at the end, as in `clear`
    // Gaps are removed only when half of the entries are gaps, so that single removals stay cheap.
    if (_live < _entries.size() / 2) compact();
    return true;
}

bool MemberList::contains(const Animator& item) {
    // The most frequent search is for the entry that was added last.
    if (_live > 0 && _entries.back().get() == &item && !isGap(_entries.size() - 1)) return true;
    return find(item, None) != None;
}

const std::shared_ptr<Animator>& MemberList::at(std::int64_t index) {
    compact();
    return _entries[static_cast<std::size_t>(index)];
}

MemberList::Members MemberList::items() const {
    Members result;
    result.reserve(_live);
    for (std::size_t i = _firstLive; i < _entries.size(); ++i) {
        if (!isGap(i)) result.push_back(_entries[i]);
    }
    return result;
}

std::size_t MemberList::find(const Animator& item, std::size_t hint) {
    if (AnimatorInside::memberships(item) == 0) return None;
    // An animator with only one membership cannot be at any other position.
    if (hint != None && AnimatorInside::memberships(item) == 1 && _entries[hint].get() == &item &&
        !isGap(hint)) {
        return hint;
    }
    if (!_index && _scans.exceeded(_live)) makeIndex();
    if (_index) return _index->first(item);
    for (std::size_t i = _firstLive; i < _entries.size(); ++i) {
        if (_entries[i].get() == &item && !isGap(i)) {
            _scans.spend(i - _firstLive);
            return i;
        }
    }
    _scans.spend(_entries.size() - _firstLive);
    return None;
}

void MemberList::makeIndex() {
    _index = std::make_unique<OccurrenceIndex>(_entries.size());
    for (std::size_t i = 0; i < _entries.size(); ++i) _index->append(isGap(i) ? nullptr : _entries[i].get());
}

// Removes the gaps. Animators that were removed during a walk are released at the end, when the list is
// consistent again.
void MemberList::compact() {
    if (_live == _entries.size() || _walkEnd > 0) return;
    Members gone;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < _entries.size(); ++i) {
        if (isGap(i)) {
            gone.push_back(std::move(_entries[i]));
        } else if (kept++ != i) {
            _entries[kept - 1] = std::move(_entries[i]);
        }
    }
    _entries.resize(kept);
    _gaps.clear();
    _firstLive = 0;
    _index.reset();
    _scans.reset();
}

} // namespace tonewright

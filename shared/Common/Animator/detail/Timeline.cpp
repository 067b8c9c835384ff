// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/detail/Timeline.hpp"

#include "platform/foundation/checked.hpp"
#include "shared/Common/Animator/detail/AnimatorInside.hpp"

#include <algorithm>
#include <atomic>
#include <tuple>
#include <utility>

namespace tonewright {
namespace {

using Inside = AnimatorInside;

// Counters for the whole process. Timelines on different threads have no members in common, so a change on
// another thread only costs a timeline a needless check of its members.
std::atomic<std::uint64_t> startChanges{0};
std::atomic<std::uint64_t> lengthChanges{0};
std::atomic<std::uint32_t> lastNumber{0};

std::uint64_t read(const std::atomic<std::uint64_t>& counter) noexcept {
    return counter.load(std::memory_order_relaxed);
}

constexpr auto ByStartFrame = [](const auto& a, const auto& b) { return a.startFrame < b.startFrame; };

} // namespace

Timeline::Timeline()
    : _starts(read(startChanges))
    , _lengths(read(lengthChanges))
    , _number(lastNumber.fetch_add(1, std::memory_order_relaxed) + 1) {}

Timeline::~Timeline() {
    clear();
}

void Timeline::lengthChanged() noexcept {
    lengthChanges.fetch_add(1, std::memory_order_relaxed);
}

bool Timeline::isTrusted() const noexcept {
    return _starts == read(startChanges);
}

void Timeline::add(std::shared_ptr<Animator> item, std::int64_t startFrame) {
    Animator& animator = *item;
    const bool isPlaced = Inside::placements(animator) > 0;
    const bool isHere =
        isPlaced && (Inside::timeline(animator) == _number ||
                     (Inside::timeline(animator) == Several && find(animator) != OccurrenceIndex::None));
    const bool moves = isPlaced && Inside::startFrame(animator) != startFrame;
    const bool sortsAnew = !isTrusted() || (moves && isHere);
    if (sortsAnew) sortPending(); // sorts the entries added before the change by their old start frames

    Inside::startFrame(animator) = startFrame;
    if (moves) {
        const bool wasMeasured = _lengths == read(lengthChanges);
        startChanges.fetch_add(1, std::memory_order_relaxed);
        lengthChanged();
        if (wasMeasured) _lengths = read(lengthChanges);
    }
    ++Inside::placements(animator);
    Inside::noteClass(animator);
    Inside::timeline(animator) = isPlaced && Inside::timeline(animator) != _number ? Several : _number;
    if (_unmeasured != nullptr) _measureAll = true;
    _unmeasured = &animator;
    if (_index) _index->append(&animator);
    _entries.push_back({startFrame, std::move(item)});
    ++_live;

    if (sortsAnew) sortAnew();
    _starts = read(startChanges);
}

bool Timeline::remove(const Animator& item) {
    const std::size_t position = find(item);
    if (position == OccurrenceIndex::None) return false;
    // Destroyed at the end, because code that runs during its destruction may use the list.
    const std::shared_ptr<Animator> gone = std::exchange(_entries[position].animator, nullptr);
    leave(*gone);
    if (_index) _index->removeFirst(item);
    if (_unmeasured == &item) {
        _unmeasured = nullptr;
        _measureAll = true;
    }
    --_live;
    if (_live < _entries.size() / 2) compact();
    return true;
}

void Timeline::leave(Animator& animator) {
    if (--Inside::placements(animator) == 0) Inside::timeline(animator) = 0;
}

void Timeline::clear() {
    for (const Entry& entry : _entries) {
        if (entry.animator) leave(*entry.animator);
    }
    const std::vector<Entry> gone = std::exchange(_entries, {});
    _live = 0;
    _sorted = 0;
    _unmeasured = nullptr;
    dropIndex();
}

std::int64_t Timeline::latestEnd(std::int64_t end) {
    const auto measure = [&](const Animator& animator) {
        end = std::max(end, platform::checkedAdd(Inside::startFrame(animator), Inside::frames(animator)));
    };
    if (_measureAll || _lengths != read(lengthChanges)) {
        for (const Entry& entry : _entries) {
            if (entry.animator) measure(*entry.animator);
        }
    } else if (_unmeasured != nullptr) {
        measure(*_unmeasured);
    }
    _measureAll = false;
    _unmeasured = nullptr;
    _lengths = read(lengthChanges);
    return end;
}

void Timeline::putInOrder() {
    compact();
    sortPending();
    if (isTrusted()) return;
    // Some animator's start frame has changed. If it is not the start frame of one of these members, the
    // order is still valid.
    const bool holds = std::all_of(_entries.begin(), _entries.end(), [](const Entry& entry) {
        return entry.startFrame == Inside::startFrame(*entry.animator);
    });
    if (holds) _starts = read(startChanges);
}

std::vector<std::shared_ptr<Animator>> Timeline::items() {
    putInOrder();
    std::vector<std::shared_ptr<Animator>> result;
    result.reserve(_entries.size());
    for (const Entry& entry : _entries) result.push_back(entry.animator);
    return result;
}

std::size_t Timeline::find(const Animator& item) {
    if (Inside::placements(item) == 0) return OccurrenceIndex::None;
    if (!_index && _scans.exceeded(_live)) {
        _index = std::make_unique<OccurrenceIndex>(_entries.size());
        for (const Entry& entry : _entries) _index->append(entry.animator.get());
    }
    if (_index) return _index->first(item);
    auto begin = _entries.begin();
    auto end = _entries.end();
    if (isTrusted() && _sorted == _entries.size()) {
        std::tie(begin, end) =
            std::equal_range(begin, end, Entry{Inside::startFrame(item), nullptr}, ByStartFrame);
    }
    const auto place = std::find_if(begin, end, [&](const Entry& e) { return e.animator.get() == &item; });
    _scans.spend(static_cast<std::size_t>(place - begin));
    return place == end ? OccurrenceIndex::None : static_cast<std::size_t>(place - _entries.begin());
}

// Sorting is stable, so sorting all new entries together has the same result as sorting after each addition.
void Timeline::sortPending() {
    if (_sorted == _entries.size()) return;
    const auto middle = _entries.begin() + static_cast<std::ptrdiff_t>(_sorted);
    const auto inOrder =
        std::is_sorted_until(_sorted == 0 ? middle : middle - 1, _entries.end(), ByStartFrame);
    if (inOrder != _entries.end()) {
        std::stable_sort(middle, _entries.end(), ByStartFrame);
        std::inplace_merge(_entries.begin(), middle, _entries.end(), ByStartFrame);
        dropIndex();
    }
    _sorted = _entries.size();
}

void Timeline::sortAnew() {
    compact();
    for (Entry& entry : _entries) entry.startFrame = Inside::startFrame(*entry.animator);
    std::stable_sort(_entries.begin(), _entries.end(), ByStartFrame);
    _sorted = _entries.size();
    dropIndex();
}

void Timeline::compact() {
    if (_live == _entries.size()) return;
    const auto isGap = [](const Entry& entry) { return !entry.animator; };
    const auto middle = _entries.begin() + static_cast<std::ptrdiff_t>(_sorted);
    const auto gaps = std::count_if(_entries.begin(), middle, isGap);
    _entries.erase(std::remove_if(_entries.begin(), _entries.end(), isGap), _entries.end());
    _sorted -= static_cast<std::size_t>(gaps);
    dropIndex();
}

void Timeline::dropIndex() {
    _index.reset();
    _scans.reset();
}

} // namespace tonewright

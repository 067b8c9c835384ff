// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/detail/OccurrenceIndex.hpp"

namespace tonewright {

OccurrenceIndex::OccurrenceIndex(std::size_t count) {
    _occurrences.reserve(count);
    _next.reserve(count);
}

void OccurrenceIndex::append(const Animator* item) {
    const std::size_t position = _next.size();
    _next.push_back(None);
    if (item == nullptr) return;
    const auto [place, isNew] = _occurrences.try_emplace(item, Occurrences{position, position});
    if (isNew) return;
    _next[place->second.last] = position;
    place->second.last = position;
}

std::size_t OccurrenceIndex::first(const Animator& item) const {
    const auto place = _occurrences.find(&item);
    return place == _occurrences.end() ? None : place->second.first;
}

void OccurrenceIndex::removeFirst(const Animator& item) {
    const auto place = _occurrences.find(&item);
    const std::size_t next = _next[place->second.first];
    if (next == None) {
        _occurrences.erase(place);
    } else {
        place->second.first = next;
    }
}

} // namespace tonewright

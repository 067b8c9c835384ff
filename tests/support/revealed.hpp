// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Access to private members of a class, for tests, without a word in the class's header: the arguments of an
// explicit instantiation may name them. In namespace tonewright::test:
//
//     struct Count { friend auto revealed(Count); };
//     template struct Reveal<Count, &Thing::_count>;
//     ... thing.*revealed(Count()) ...
#pragma once

namespace tonewright::test {

template <class Key, auto Member>
struct Reveal {
    friend auto revealed(Key) { return Member; }
};

} // namespace tonewright::test

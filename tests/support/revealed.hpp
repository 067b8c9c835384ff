// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Gives tests access to private members of a class without changing its header, because the arguments of an
// explicit instantiation can name private members. In namespace tonewright::test:
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

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/outside/Supervisor.hpp"

#include <algorithm>

namespace platform::lv2 {
namespace {

using Event = Supervisor::Event;
using Main = Supervisor::Main;
using Spare = Supervisor::Spare;
using State = Supervisor::State;

struct Row {
    State from;
    Event event;
    State to;
    int actions;
};

// All that can happen. There is at most one start under way.
// clang-format off
constexpr Row Table[] = {
    // main           spare               event                 main           spare              actions
    {{Main::Absent,   Spare::Absent},   Event::Due,           {Main::Starting, Spare::Absent},   Supervisor::Start},
    {{Main::Absent,   Spare::Absent},   Event::Exhausted,     {Main::GivenUp,  Spare::Absent},   Supervisor::Outage},
    {{Main::Absent,   Spare::Absent},   Event::Reload,        {Main::Absent,   Spare::Absent},   Supervisor::Nothing},

    {{Main::Starting, Spare::Absent},   Event::Started,       {Main::Running,  Spare::Absent},   Supervisor::PutMain},
    {{Main::Starting, Spare::Absent},   Event::Outdated,      {Main::Absent,   Spare::Absent},   Supervisor::Drop},
    {{Main::Starting, Spare::Absent},   Event::StartFailed,   {Main::Absent,   Spare::Absent},   Supervisor::Warn},

    {{Main::Running,  Spare::Absent},   Event::Due,           {Main::Running,  Spare::Starting}, Supervisor::Start},
    {{Main::Running,  Spare::Absent},   Event::MainHangs,     {Main::Running,  Spare::Absent},   Supervisor::KillMain},
    {{Main::Running,  Spare::Absent},   Event::MainEnded,     {Main::Absent,   Spare::Absent},   Supervisor::NoteLoss | Supervisor::Warn},

    {{Main::Running,  Spare::Starting}, Event::Started,       {Main::Running,  Spare::Running},  Supervisor::PutSpare},
    {{Main::Running,  Spare::Starting}, Event::Outdated,      {Main::Running,  Spare::Absent},   Supervisor::Drop},
    {{Main::Running,  Spare::Starting}, Event::StartFailed,   {Main::Running,  Spare::Absent},   Supervisor::Warn},
    {{Main::Running,  Spare::Starting}, Event::MainHangs,     {Main::Running,  Spare::Starting}, Supervisor::KillMain},
    {{Main::Running,  Spare::Starting}, Event::MainEnded,     {Main::Starting, Spare::Absent},   Supervisor::NoteLoss | Supervisor::Warn},

    {{Main::Running,  Spare::Running},  Event::MainHangs,     {Main::Running,  Spare::Running},  Supervisor::KillMain},
    {{Main::Running,  Spare::Running},  Event::SpareHangs,    {Main::Running,  Spare::Running},  Supervisor::KillSpare},
    {{Main::Running,  Spare::Running},  Event::SpareTooLarge, {Main::Running,  Spare::Absent},   Supervisor::DropSpare},
    {{Main::Running,  Spare::Running},  Event::SpareEnded,    {Main::Running,  Spare::Absent},   Supervisor::Warn},
    {{Main::Running,  Spare::Running},  Event::MainEnded,     {Main::Running,  Spare::Absent},   Supervisor::NoteLoss | Supervisor::Promote | Supervisor::Warn},

    {{Main::GivenUp,  Spare::Absent},   Event::Reload,        {Main::Absent,   Spare::Absent},   Supervisor::Nothing},
};
// clang-format on

const Row* rowFor(State from, Event event) {
    const auto* const found =
        std::ranges::find_if(Table, [&](const Row& row) { return row.from == from && row.event == event; });
    return found == std::end(Table) ? nullptr : found;
}

} // namespace

Supervisor::Supervisor(const Settings& settings, Time now)
    : _settings(settings)
    , _mainStart(now) {}

Supervisor::Actions Supervisor::apply(Event event) {
    const Row* row = rowFor(_state, event);
    if (row == nullptr) return Nothing;
    _state = row->to;
    return static_cast<Actions>(row->actions);
}

// A state that makes the effect end must not keep it out.
void Supervisor::noteLife(std::optional<Time> start, Time now) {
    _shortLives = start && now - *start >= ShortLife ? 0 : _shortLives + 1;
    if (_shortLives >= MostShortLives) _choice = Choice::Defaults;
}

Supervisor::Actions Supervisor::handle(Event event, Time now) {
    if (rowFor(_state, event) == nullptr) return Nothing;
    if (event == Event::Started && _startedGeneration != _settings.generation) event = Event::Outdated;
    const State before = _state;
    int actions = apply(event);
    if ((actions & PutMain) != 0) {
        _mainStart = now;
        _isTooLarge = false;
    }
    if ((actions & PutSpare) != 0) _spareStart = now;
    if (event == Event::MainEnded) noteLife(_mainStart, now);
    if (event == Event::SpareEnded) noteLife(_spareStart, now);
    if (event == Event::StartFailed) noteLife(std::nullopt, now);
    if (before.spare == Spare::Running && event == Event::MainEnded) _mainStart = _spareStart;
    if (event == Event::MainEnded || event == Event::SpareEnded || event == Event::StartFailed) {
        _restarts.noteEnd(now);
    }
    if (event == Event::Reload) {
        _restarts.clear();
        _shortLives = 0;
        _choice = Choice::Last;
    }
    if (!_restarts.nextStart()) actions |= apply(Event::Exhausted);
    return static_cast<Actions>(actions);
}

void Supervisor::takeSettings(const Settings& settings) {
    if (settings.stateGeneration != _settings.stateGeneration) {
        _shortLives = 0;
        _choice = Choice::Last;
    }
    _settings = settings;
}

Supervisor::Actions Supervisor::takeMemory(std::uint64_t bytes) {
    if (bytes <= MostBytes) return Nothing;
    _isTooLarge = true;
    return apply(Event::SpareTooLarge);
}

std::optional<Supervisor::Time> Supervisor::nextTime() const {
    const bool isWanted = _state == State{Main::Absent, Spare::Absent} ||
                          (_state == State{Main::Running, Spare::Absent} && wantsSpare() && !_isTooLarge);
    if (!isWanted) return std::nullopt;
    const auto start = _restarts.nextStart();
    if (start == Time::min() || _state.main == Main::Absent) return start;
    // Health makes the wait shorter.
    return std::min(start.value_or(Time::max()), _restarts.nextForgiveness());
}

Supervisor::Actions Supervisor::timePassed(Time now) {
    if (_state.main == Main::Running) _restarts.forgive(now);
    const auto next = nextTime();
    if (!next || now < *next) return Nothing;
    _startedGeneration = _settings.generation;
    return apply(Event::Due);
}

} // namespace platform::lv2

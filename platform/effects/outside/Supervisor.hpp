// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decides when the processes of an effect are started, replaced and given up. Starts nothing itself and has
// no clock: each event is passed in with its time, and the caller carries out the actions that it returns.
// One thread.
#pragma once

#include "platform/effects/outside/RestartPolicy.hpp"

#include <cstdint>
#include <optional>

namespace platform::lv2 {

class Supervisor {
  public:
    using Time = RestartPolicy::Clock::time_point;

    /// The process that the effect is heard through.
    enum class Main : std::uint8_t { Absent, Starting, Running, GivenUp };
    /// The process on standby. There is one only beside a main process that runs.
    enum class Spare : std::uint8_t { Absent, Starting, Running };
    struct State {
        Main main = Main::Absent;
        Spare spare = Spare::Absent;
        bool operator==(const State&) const = default;
    };
    enum class Event : std::uint8_t {
        MainEnded,
        SpareEnded,
        MainHangs, // the audio side waits for it no longer
        SpareHangs,
        Started, // the only start that was under way
        StartFailed,
        Outdated,      // started, but with settings that have changed meanwhile
        Due,           // a process is wanted and may be started now
        Exhausted,     // a process is wanted, but too many have ended
        SpareTooLarge, // the main process needs more memory than `MostBytes`
        Reload,        // the user asks for the effect again
    };
    /// What the caller does, in this order. Several can be combined.
    enum Action : std::uint16_t {
        Nothing = 0,
        NoteLoss = 1,   // what the main process knew of the sound is lost
        Promote = 2,    // the spare becomes the main process
        Warn = 4,       // tell why the process ended or did not start
        Outage = 8,     // the effect stays out until a reload: tell that too
        KillMain = 16,  // and report its end when it comes
        KillSpare = 32, // and report its end when it comes
        DropSpare = 64, // end it; its end is not reported
        PutMain = 128,  // what was started becomes the main process
        PutSpare = 256, // what was started becomes the spare
        Drop = 512,     // end what was started; its end is not reported
        Start = 1024,   // start a process with `choice()` and report the result
    };
    using Actions = std::uint16_t;
    /// Which state a process that is started receives.
    enum class Choice : std::uint8_t {
        Last,     // the state that was restored last
        Defaults, // none, because processes with the last state failed
    };
    /// Which settings count.
    struct Settings {
        bool isAllocated = false, isOffline = false;
        std::uint64_t generation = 0;      // of all settings
        std::uint64_t stateGeneration = 0; // of the state that was restored last
    };

    /// The greatest proportional memory, in bytes, of an effect that has a spare.
    static constexpr std::uint64_t MostBytes = std::uint64_t{64} << 20U;
    /// Processes that end sooner than this after their start, or do not start, have a short life.
    static constexpr std::chrono::seconds ShortLife{1};
    /// After this many short lives in a row the last state is given up.
    static constexpr int MostShortLives = 2;

    /// Creates a supervisor whose main process already runs, since `now`.
    Supervisor(const Settings& settings, Time now);

    /// Handles an event other than Outdated, Due, Exhausted and SpareTooLarge, which follow from the others.
    /// Events that are impossible in this state have no effect.
    [[nodiscard]] Actions handle(Event event, Time now);
    /// Takes the present settings. Must be called before Started is handled.
    void takeSettings(const Settings& settings);
    /// Takes the proportional memory of the main process in bytes; 0 if it is not known.
    [[nodiscard]] Actions takeMemory(std::uint64_t bytes);
    /// Returns Start if a process is wanted and may be started at `now`.
    [[nodiscard]] Actions timePassed(Time now);
    /// Returns when `timePassed` should be called next, which may be in the past; absent if only another
    /// event changes something.
    [[nodiscard]] std::optional<Time> nextTime() const;

    [[nodiscard]] State state() const noexcept { return _state; }
    [[nodiscard]] Choice choice() const noexcept { return _choice; }
    /// Returns whether a spare is wanted as far as the settings say.
    [[nodiscard]] bool wantsSpare() const noexcept { return _settings.isAllocated && !_settings.isOffline; }

  private:
    Actions apply(Event event);
    void noteLife(std::optional<Time> start, Time now);

    State _state{Main::Running, Spare::Absent};
    RestartPolicy _restarts;
    Settings _settings;
    std::uint64_t _startedGeneration = 0; // of the start under way
    bool _isTooLarge = false;             // of the main process or one that it replaced
    Choice _choice = Choice::Last;
    int _shortLives = 0; // in a row
    Time _mainStart, _spareStart{};
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The watcher thread of OutsideProcessor: notices the end of a process, replaces it by the spare, and starts
// new processes. Supervisor decides when.
#include "platform/effects/outside/OutsideProcessor.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <array>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace platform::lv2 {

using Event = Supervisor::Event;

namespace {

// How often the effect's memory is measured while a spare is wanted.
constexpr std::chrono::seconds MeasurementInterval{10};

} // namespace

void OutsideProcessor::tellWatcher() const noexcept {
    const std::uint64_t one = 1;
    // If the counter is full, the write fails, but the watcher is awake anyway.
    (void)!::write(_news.get(), &one, sizeof one);
}

void OutsideProcessor::reload() {
    _isReloadWanted = true;
    tellWatcher();
}

void OutsideProcessor::watch() {
    while (!_isEnding) {
        superviseProcesses();
        ProcessPointer process, spare;
        {
            const std::scoped_lock lock(_mutex);
            process = _process;
            spare = _spare;
        }
        const auto endOf = [](const ProcessPointer& watched) {
            return pollfd{watched ? watched->processDescriptor() : -1, POLLIN, 0};
        };
        std::array events{pollfd{_news.get(), POLLIN, 0}, endOf(process), endOf(spare)};
        if (::poll(events.data(), events.size(), untilNextTime()) < 0) continue;
        std::uint64_t count = 0;
        (void)!::read(_news.get(), &count, sizeof count);
        _renderingThread.follow();
        if (const EffectProcess* hanging = _hanging.exchange(nullptr)) {
            const Event event = hanging == process.get() ? Event::MainHangs : Event::SpareHangs;
            const Supervisor::Actions actions = _supervisor.handle(event, Clock::now());
            if ((actions & Supervisor::KillMain) != 0) process->kill();
            if ((actions & Supervisor::KillSpare) != 0 && hanging == spare.get()) spare->kill();
        }
        if (events[1].revents != 0) handleEnd(process);
        if (events[2].revents != 0) handleEnd(spare);
    }
}

// Handles the end of the process or of the spare, which may have become the process meanwhile.
void OutsideProcessor::handleEnd(const ProcessPointer& ended) {
    const Event event = ended == current() ? Event::MainEnded : Event::SpareEnded;
    const Supervisor::Actions actions = _supervisor.handle(event, Clock::now());
    {
        const Gate::Closure closed(_gate);
        const std::scoped_lock lock(_mutex);
        if (_audibleSpare == ended.get()) _audibleSpare = nullptr;
        if (_audible == ended.get()) _audible = std::exchange(_audibleSpare, nullptr);
        if (event == Event::SpareEnded) _spare = nullptr;
        if (event == Event::MainEnded) _process = nullptr;
        if ((actions & Supervisor::Promote) != 0) _process = std::exchange(_spare, nullptr);
        if (_audible == nullptr) _audible = std::exchange(_audibleSpare, nullptr);
        // The audio side has given up the process that is left, and the news of that may have been replaced.
        if (_audible == nullptr && _process) {
            _hanging = _process.get();
            tellWatcher();
        }
        // Also between two blocks.
        if ((actions & Supervisor::NoteLoss) != 0 && _isOffline && _isAllocated) _hasFailed = true;
    }
    const std::string sentence =
        "The effect \"" + _plugin.name + "\" has ended (" + ended->reasonOfEnd() + ")";
    warn((actions & Supervisor::Outage) != 0 ? sentence + " too often; the sound goes on without it."
                                             : sentence + "; it is started again.");
}

void OutsideProcessor::superviseProcesses() {
    _supervisor.takeSettings(settings().counting());
    if (_isReloadWanted.exchange(false)) (void)_supervisor.handle(Event::Reload, Clock::now());
    measureProcess();
    while (!_isEnding && _supervisor.timePassed(Clock::now()) == Supervisor::Start) {
        startNext();
        measureProcess();
    }
}

// A spare would double the memory of an effect that needs much.
void OutsideProcessor::measureProcess() {
    const ProcessPointer process = current();
    if (!process || !_supervisor.wantsSpare() || Clock::now() < _nextMeasurement) return;
    _nextMeasurement = Clock::now() + MeasurementInterval;
    const std::uint64_t bytes = process->proportionalBytes();
    if (_supervisor.state().spare != Supervisor::Spare::Running || bytes <= Supervisor::MostBytes) {
        (void)_supervisor.takeMemory(bytes);
        return;
    }
    ProcessPointer dropped; // ended when the gate is open again
    const Gate::Closure closed(_gate);
    const std::scoped_lock lock(_mutex);
    if (_audible != process.get()) return; // the spare is heard already
    if ((_supervisor.takeMemory(bytes) & Supervisor::DropSpare) == 0) return;
    _audibleSpare = nullptr;
    dropped = std::move(_spare);
}

// Starts one process and puts it into its place, or drops it.
void OutsideProcessor::startNext() {
    Settings told = settings();
    if (_supervisor.choice() == Supervisor::Choice::Defaults) told.state.clear();
    auto started = startProcess(told, false);
    if (!started) {
        const Supervisor::Actions actions = _supervisor.handle(Event::StartFailed, Clock::now());
        warn(started.error().localizedDescription());
        if ((actions & Supervisor::Outage) != 0) {
            warn("The sound goes on without the effect \"" + _plugin.name + "\".");
        }
        return;
    }
    const Gate::Closure closed(_gate);
    const std::scoped_lock lock(_mutex);
    _supervisor.takeSettings(_settings.counting());
    const Supervisor::Actions actions = _supervisor.handle(Event::Started, Clock::now());
    if ((actions & Supervisor::PutMain) != 0) {
        _process = std::move(started.value());
        copyValues(_process->memory()); // they may have changed meanwhile
        _audible = _process.get();
        _nextMeasurement = {};
    }
    if ((actions & Supervisor::PutSpare) != 0) {
        _spare = std::move(started.value());
        copyValues(_spare->memory());
        // The audio side may have given up the process already, without a spare to change to.
        (_audible == nullptr ? _audible : _audibleSpare) = _spare.get();
    }
}

// Returns how many milliseconds poll may wait, or -1 for no limit.
int OutsideProcessor::untilNextTime() const {
    auto next = _supervisor.nextTime();
    if (_supervisor.wantsSpare() && current()) {
        next = std::min(next.value_or(Clock::time_point::max()), _nextMeasurement);
    }
    if (!next) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*next - Clock::now()).count();
    return static_cast<int>(std::max<std::int64_t>(left, 0));
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The control side of OutsideProcessor: settings and requests.
#include "platform/effects/outside/OutsideProcessor.hpp"

#include "platform/effects/lv2/SignalPorts.hpp"
#include "platform/effects/lv2/requirements.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <sys/eventfd.h>

namespace platform::lv2 {
namespace {

// Both limits are longer than those inside the process, so that the process itself reports a failure, with a
// more precise reason.
constexpr std::chrono::seconds FirstLimit{6};
constexpr std::chrono::seconds Limit{3};
constexpr std::uint32_t FadeFrames = 240;

BlockMemory::Shape shapeOf(const std::vector<Port>& ports) {
    const SignalPorts signal(ports);
    return {.inputs = static_cast<std::uint32_t>(signal.inputs.size()),
            .outputs = static_cast<std::uint32_t>(signal.outputs.size()),
            .ports = static_cast<std::uint32_t>(ports.size())};
}

std::int64_t latencyPortOf(const std::vector<Port>& ports) {
    const auto found = std::ranges::find_if(ports, &Port::reportsLatency);
    return found == ports.end() ? -1 : std::int64_t{found->index};
}

} // namespace

OutsideProcessor::OutsideProcessor(std::shared_ptr<World> world, Plugin plugin, double sampleRate,
                                   std::uint32_t blockFrames)
    : _world(std::move(world))
    , _plugin(std::move(plugin))
    , _shape(shapeOf(_plugin.ports))
    , _latencyPort(latencyPortOf(_plugin.ports))
    , _values(std::make_unique<std::atomic<float>[]>(_plugin.ports.size()))
    , _sampleRate(sampleRate)
    , _dry(_shape.inputs, _shape.outputs, FadeFrames)
    , _midiRecord(BlockMemory::LongestMidi)
    , _news(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , _supervisor({}, Clock::now()) {
    const bool sendsMidi = std::ranges::any_of(_plugin.ports, [](const Port& port) {
        return port.kind == PortKind::AtomOutput && port.supportsMidi;
    });
    if (sendsMidi) _midi = std::make_unique<MIDIOutputDelivery>(_plugin.name);
    _settings.blockFrames = std::clamp(blockFrames, 1U, BlockMemory::LongestBlock);
    _settings.sampleRate = sampleRate;
    _gate.open();
}

Result<std::shared_ptr<OutsideProcessor>> OutsideProcessor::make(std::shared_ptr<World> world, Plugin plugin,
                                                                 double sampleRate,
                                                                 std::uint32_t blockFrames) {
    std::shared_ptr<OutsideProcessor> processor(
        new OutsideProcessor(std::move(world), std::move(plugin), sampleRate, blockFrames));
    auto process = processor->startProcess(processor->settings(), true);
    if (!process) return process.error();
    processor->takeValues(process.value()->memory());
    processor->_audible = process.value().get();
    processor->_process = std::move(process.value());
    processor->_watcher = std::thread([self = processor.get()] { self->watch(); });
    return processor;
}

OutsideProcessor::~OutsideProcessor() {
    _isEnding = true;
    tellWatcher();
    if (_watcher.joinable()) _watcher.join();
}

OutsideProcessor::ProcessPointer OutsideProcessor::current() const {
    const std::scoped_lock lock(_mutex);
    return _process;
}

OutsideProcessor::Settings OutsideProcessor::settings() const {
    const std::scoped_lock lock(_mutex);
    return _settings;
}

template <class Change>
void OutsideProcessor::change(Change&& change) {
    const std::scoped_lock lock(_mutex);
    change(_settings);
    ++_settings.generation;
}

// Starts a process and transfers the settings to it, except to the first process, which starts with the
// defaults.
Result<OutsideProcessor::ProcessPointer> OutsideProcessor::startProcess(const Settings& settings,
                                                                        bool isFirst) const {
    auto started = EffectProcess::start(_plugin, _shape);
    if (!started) return started.error();
    ProcessPointer process = std::move(started.value());
    std::optional<Error> failure;
    const auto ask = [&](const Message& request, const std::string& text = {}) {
        if (failure) return;
        if (auto answer = process->ask(request, text, FirstLimit); !answer) failure = answer.error();
    };
    ask({.request = Request::Make, .frames = settings.blockFrames, .sampleRate = settings.sampleRate});
    if (!isFirst) {
        if (!settings.state.empty()) ask({.request = Request::RestoreState}, settings.state);
        copyValues(process->memory());
        ask({.request = Request::SetOffline, .flag = settings.isOffline ? 1U : 0U});
        if (settings.isAllocated) {
            ask({.request = Request::Allocate,
                 .frames = settings.maximumFrames,
                 .sampleRate = settings.sampleRate});
        }
    }
    if (failure) return *failure;
    return process;
}

void OutsideProcessor::takeValues(const BlockMemory& memory) {
    for (const Port& port : _plugin.ports) {
        if (port.kind == PortKind::ControlInput) _values[port.index] = memory.values()[port.index].load();
    }
}

void OutsideProcessor::copyValues(const BlockMemory& memory) const noexcept {
    for (const Port& port : _plugin.ports) {
        if (port.kind != PortKind::ControlInput) continue;
        memory.values()[port.index].store(_values[port.index].load(std::memory_order_relaxed),
                                          std::memory_order_relaxed);
    }
    memory.header().hasNewValues.store(true, std::memory_order_release);
}

// Sends a request to the process and to the standby process, and returns the failure of the former. Without a
// process nothing is sent, because the next process receives the settings when it starts.
std::optional<Error> OutsideProcessor::askBoth(const Message& request, const std::string& text) {
    ProcessPointer process, spare;
    {
        const std::scoped_lock lock(_mutex);
        process = _process;
        spare = _spare;
    }
    std::optional<Error> failure;
    if (process) {
        if (const auto answer = process->ask(request, text, Limit); !answer) failure = answer.error();
    }
    if (spare && !failure && !spare->ask(request, text, Limit)) spare->kill(); // the watcher reports its end
    return failure;
}

void OutsideProcessor::setBlockFrames(std::uint32_t frames) {
    frames = std::clamp(frames, 1U, BlockMemory::LongestBlock);
    change([frames](Settings& settings) { settings.blockFrames = frames; });
    if (const auto failure = askBoth({.request = Request::SetBlockFrames, .frames = frames})) {
        warn(failure->localizedDescription());
    }
}

void OutsideProcessor::setOffline(bool isOffline) {
    _isOffline = isOffline;
    change([isOffline](Settings& settings) { settings.isOffline = isOffline; });
    if (const auto failure = askBoth({.request = Request::SetOffline, .flag = isOffline ? 1U : 0U})) {
        warn(failure->localizedDescription());
    }
}

std::optional<Error> OutsideProcessor::allocate(double sampleRate, std::uint32_t maximumFrames) {
    auto failure = askBoth({.request = Request::Allocate, .frames = maximumFrames, .sampleRate = sampleRate});
    if (failure) return failure;
    if (const ProcessPointer process = current()) takeValues(process->memory());
    _sampleRate = sampleRate;
    _isAllocated = true;
    change([&](Settings& settings) {
        settings.sampleRate = sampleRate;
        settings.maximumFrames = maximumFrames;
        settings.isAllocated = true;
    });
    tellWatcher(); // from now on a standby process is wanted
    return std::nullopt;
}

void OutsideProcessor::release() noexcept {
    _isAllocated = false;
    _renderingThread.letGo();
    change([](Settings& settings) { settings.isAllocated = false; });
    if (const auto failure = askBoth({.request = Request::Release})) warn(failure->localizedDescription());
}

float OutsideProcessor::value(std::uint32_t port) const noexcept {
    if (port >= _shape.ports) return 0;
    const bool isReported = _plugin.ports[port].kind == PortKind::ControlOutput;
    const ProcessPointer process = isReported ? current() : nullptr;
    return process ? process->memory().values()[port].load(std::memory_order_relaxed) : _values[port].load();
}

void OutsideProcessor::setValue(std::uint32_t port, float value) noexcept {
    if (port >= _shape.ports || _plugin.ports[port].kind != PortKind::ControlInput) return;
    _values[port] = value;
    const ProcessPointer process = current();
    if (!process) return;
    process->memory().values()[port].store(value, std::memory_order_relaxed);
    process->memory().header().hasNewValues.store(true, std::memory_order_release);
}

std::uint32_t OutsideProcessor::latencyFrames() const noexcept {
    const ProcessPointer process = current();
    return process ? latencyOf(process->memory()) : _latency.load();
}

bool OutsideProcessor::sendMidi(std::uint32_t port, std::span<const std::uint8_t> message) {
    const ProcessPointer process = current();
    if (!process) return false;
    const std::string bytes(message.begin(), message.end());
    return static_cast<bool>(process->ask({.request = Request::SendMidi, .frames = port}, bytes, Limit));
}

bool OutsideProcessor::sendAtom(std::uint32_t port, std::span<const std::byte> atom) {
    if (port >= _shape.ports || _plugin.ports[port].kind != PortKind::AtomInput) return false;
    const ProcessPointer process = current();
    return process && process->sendAtom(port, atom);
}

void OutsideProcessor::setListening(bool isListening) noexcept {
    _listener = isListening ? ++_lastListener : 0;
    if (const ProcessPointer process = current()) process->setListener(_listener);
}

bool OutsideProcessor::receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) {
    const ProcessPointer process = current();
    if (!process) return false;
    process->setListener(_listener); // it may have taken another one's place
    while (process->receiveAtom(port, atom, _listener)) {
        if (port < _shape.ports && _plugin.ports[port].kind == PortKind::AtomOutput) return true;
    }
    return false;
}

Result<std::string> OutsideProcessor::saveState() {
    const ProcessPointer process = current();
    if (!process) return unusable(_plugin, "its process has ended");
    return process->ask({.request = Request::SaveState}, {}, Limit);
}

std::optional<Error> OutsideProcessor::restore(const Message& request, const std::string& text) {
    const ProcessPointer process = current();
    if (!process) return unusable(_plugin, "its process has ended");
    if (auto failure = askBoth(request, text)) return failure;
    takeValues(process->memory());
    const auto state = saveState();
    if (!state) return state.error();
    change([&](Settings& settings) {
        settings.state = state.value();
        ++settings.stateGeneration;
    });
    return std::nullopt;
}

std::optional<Error> OutsideProcessor::restoreState(const std::string& text) {
    return restore({.request = Request::RestoreState}, text);
}

std::optional<Error> OutsideProcessor::restorePreset(const std::string& uri) {
    return restore({.request = Request::RestorePreset}, uri);
}

} // namespace platform::lv2

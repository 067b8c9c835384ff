// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/EngineCore.hpp"

#include "platform/audio/NodeProcessor.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <chrono>

namespace platform {
namespace {

// The interval at which the watcher checks whether retired plans are still in use.
constexpr std::chrono::milliseconds GraveyardPeriod{100};

std::string effectNamed(const NodeProcessor& processor) {
    const std::string name = processor.name();
    return name.empty() ? "The effect" : "The effect \"" + name + '"';
}

} // namespace

// Holds the engine's mutex. The destructor unlocks it, then releases effects and prints messages.
class EngineCore::Edit {
  public:
    explicit Edit(EngineCore& core)
        : _lock(core._mutex) {}
    ~Edit() {
        _lock.unlock();
        for (const auto& processor : released) processor->release();
        for (const std::string& message : messages) warn(message);
    }
    Edit(const Edit&) = delete;
    Edit& operator=(const Edit&) = delete;

    /// Calls `work` with the mutex unlocked.
    template <class Work>
    void unlocked(Work&& work) {
        _lock.unlock();
        work();
        _lock.lock();
    }

    std::vector<std::shared_ptr<NodeProcessor>> released;
    std::vector<std::string> messages;

  private:
    std::unique_lock<std::mutex> _lock;
};

EngineCore::EngineCore(std::shared_ptr<OutputDevice> device, NodePointer mainMixer, NodePointer output)
    : _device(std::move(device))
    , _offline(_device->isOffline())
    , _graph(std::move(mainMixer), std::move(output)) {}

// --- editing

void EngineCore::attach(const NodePointer& node) {
    Edit edit(*this);
    if (!node) return;
    if (!_graph.attach(node)) {
        edit.messages.emplace_back("A node of another audio engine can't be attached.");
        return;
    }
    const auto processor = node->processor();
    const auto keeps = [&](const auto& renderer) { return renderer && renderer->keeps(processor.get()); };
    if (processor && (keeps(_renderer) || std::ranges::any_of(_abandoned, keeps))) {
        // A thread was inside the processor when it was detached, and has not returned yet.
        _graph.setStuck(*processor, true);
    }
}

void EngineCore::detach(const NodePointer& node) {
    Edit edit(*this);
    if (!node || !_graph.holds(*node)) return;
    if (_graph.unlink(*node)) graphDidChange(edit);
    if (auto processor = _graph.detach(*node)) edit.released.push_back(std::move(processor));
}

void EngineCore::connect(const NodePointer& from, const NodePointer& to,
                         std::optional<AVAudioFormat> format) {
    Edit edit(*this);
    if (!from || !to || !_graph.holds(*from) || !_graph.holds(*to)) {
        edit.messages.emplace_back("A node that isn't attached to the audio engine can't be connected.");
        return;
    }
    // A link to the output in the device's own format follows later changes of that format.
    if (format == _device->format() && _graph.isOutput(*to)) format.reset();
    _graph.connect(*from, *to, format);
    graphDidChange(edit);
}

void EngineCore::disconnectInput(const NodePointer& node) {
    Edit edit(*this);
    if (node && _graph.disconnectInput(*node)) graphDidChange(edit);
}

// --- starting and stopping

void EngineCore::prepare() {
    const std::scoped_lock turn(_startMutex);
    Edit edit(*this);
    if (_ended || _planIsCurrent) return;
    makeRenderer();
    if (!_running) tellBlockFrames(edit, statedBlockFrames());
    rebuild(edit);
}

std::optional<Error> EngineCore::start() {
    const std::scoped_lock turn(_startMutex);
    Edit edit(*this);
    if (_running || _ended) return std::nullopt;
    if (!_watcher.joinable()) _watcher = std::thread([this] { watch(); });
    makeRenderer();
    // Until the first block is rendered, the block length is what the device states.
    const std::uint32_t frames = statedBlockFrames();
    _renderer->reset(frames);
    tellBlockFrames(edit, frames);
    if (!_planIsCurrent || _planFormat != _device->format()) rebuild(edit);
    if (auto error = _device->start(_renderer)) return error;
    _running = true;
    if (_planFormat != _device->format()) rebuild(edit); // starting may reveal the device's real format
    return std::nullopt;
}

void EngineCore::stop() {
    const std::scoped_lock turn(_startMutex);
    Edit edit(*this);
    if (!_running) return;
    _renderer->requestStop();
    _device->stop();
    _running = false;
    if (!_renderer->isRendering()) return;
    // The device has waited in vain for its thread to return and abandons it. The engine abandons the
    // renderer.
    publish(edit, nullptr, std::chrono::nanoseconds(0));
    _planIsCurrent = false;
    _abandoned.push_back(std::move(_renderer));
    _news->signal();
}

void EngineCore::shutDown() {
    stop();
    {
        Edit edit(*this);
        _ended = true;
        publish(edit, nullptr);
        _news->signal();
    }
    if (_watcher.joinable()) _watcher.join();
}

// Returns the block length that the device states, as far as the renderer does not split such blocks.
std::uint32_t EngineCore::statedBlockFrames() const {
    return std::min(_device->blockFrames(),
                    RenderPlan::maximumFrames(_device->format().sampleRate, _offline));
}

// _mutex is held.
void EngineCore::makeRenderer() {
    if (_renderer) return;
    _renderer = std::make_shared<EngineRenderer>(_offline, _news, [weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) self->followFormat();
    });
}

void EngineCore::followFormat() {
    _control.async([weakSelf = weak_from_this()] {
        const auto self = weakSelf.lock();
        if (!self) return;
        Edit edit(*self);
        if (self->_running && self->_planFormat != self->_device->format()) self->rebuild(edit);
    });
}

// --- plans

// Rebuilds the plan of a running engine. A stopped engine builds its plan when it is next prepared or
// started. _mutex is held.
void EngineCore::graphDidChange(Edit& edit) {
    if (_running) {
        rebuild(edit);
    } else {
        publish(edit, nullptr);
        _planIsCurrent = false;
    }
}

// _mutex is held, except while effects are being prepared.
void EngineCore::rebuild(Edit& edit) {
    while (!_ended && _renderer) {
        const AVAudioFormat format = _device->format();
        if (format.sampleRate != _planFormat.sampleRate) {
            publish(edit, nullptr); // processors are allocated again and must not be in use
        }
        _planFormat = format;
        _planIsCurrent = false;
        NodeGraph::Compiled compiled = _graph.compile(format, _offline);
        if (!compiled.unready.empty()) {
            edit.unlocked([&] { compiled.makeReady(); });
            _graph.noteReadiness(compiled, edit.released, edit.messages);
        } else if (!publish(edit, std::move(compiled.plan))) {
            _planIsCurrent = true;
            return;
        }
    }
}

// Returns whether the previous plan had to be retired. `plan` may then contain the stuck effect and must be
// compiled again. _mutex is held.
bool EngineCore::publish(Edit& edit, std::unique_ptr<RenderPlan> plan, std::chrono::nanoseconds limit) {
    if (!_renderer) return false;
    const auto retired = _renderer->publish(std::move(plan), limit);
    if (!retired) return false;
    if (retired->inside) {
        _graph.setStuck(*retired->inside, true);
        edit.messages.push_back(effectNamed(*retired->inside) + " has not returned from rendering in " +
                                std::to_string(ControlLimit.count()) +
                                " seconds; it is left out until it does.");
    }
    _graph.forgetConverters();
    _news->signal();
    return true;
}

// _mutex is held, except while the effects are called.
void EngineCore::tellBlockFrames(Edit& edit, std::uint32_t frames) {
    const auto processors = _graph.setBlockFrames(frames);
    if (processors.empty()) return;
    edit.unlocked([&] {
        for (const auto& processor : processors) processor->setBlockFrames(frames);
    });
}

// --- the watcher

// Frees the retired plans and abandoned renderers that are no longer in use, and adds effects that have
// returned to the plan again. _mutex is held.
void EngineCore::takeBack(Edit& edit) {
    std::vector<std::shared_ptr<NodeProcessor>> returned;
    const auto empty = [&](EngineRenderer& renderer) {
        std::ranges::move(renderer.emptyGraveyard(), std::back_inserter(returned));
    };
    if (_renderer) empty(*_renderer);
    std::erase_if(_abandoned, [&](const auto& renderer) {
        empty(*renderer);
        return !renderer->hasRetiredPlans() && !renderer->isRendering();
    });
    for (auto& processor : returned) {
        edit.messages.push_back(effectNamed(*processor) + " has returned.");
        if (!_graph.setStuck(*processor, false)) edit.released.push_back(std::move(processor));
    }
    if (!returned.empty() && _running) rebuild(edit);
}

void EngineCore::watch() {
    for (bool hasGraves = false;;) {
        if (hasGraves) {
            (void)_news->waitFor(GraveyardPeriod);
        } else {
            _news->wait();
        }
        Edit edit(*this);
        _graph.reportBadSamples(edit.messages);
        takeBack(edit);
        if (_ended) return;
        hasGraves = !_abandoned.empty() || (_renderer && _renderer->hasRetiredPlans());
        if (_running && !_offline) tellBlockFrames(edit, _renderer->blockFrames());
    }
}

} // namespace platform

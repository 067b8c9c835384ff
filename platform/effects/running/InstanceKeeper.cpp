// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/InstanceKeeper.hpp"

#include "platform/effects/lv2/requirements.hpp"
namespace platform::lv2 {

std::optional<Error> InstanceKeeper::stuck() const {
    if (!_late || _late->progress == PluginThread::Progress::Ended) return std::nullopt;
    return unusable(*_plugin, "it still has not returned from an earlier call");
}

std::optional<Error> InstanceKeeper::run(std::function<void()> task, const Deadline& deadline,
                                         const std::string& doing) {
    // If another plug-in of the library has blocked the thread, this plug-in uses a new thread.
    if (!_thread || _thread->isStuck()) _thread = PluginThread::of(_plugin->libraryPath);
    auto call = _thread->post(std::move(task));
    const auto progress = _thread->waitFor(*call, deadline.end());
    if (progress == PluginThread::Progress::Ended) return std::nullopt;
    _late = std::move(call);
    if (progress == PluginThread::Progress::Queued) {
        return unusable(*_plugin, "another effect of its library has not returned from a call");
    }
    return unusable(*_plugin, "it has not returned from " + doing + " in " +
                                  std::to_string(deadline.limit().count()) + " seconds");
}

std::optional<Error> InstanceKeeper::make(const Instance::Setup& setup, const Deadline& deadline) {
    if (auto failure = stuck()) return failure;
    struct Attempt {
        std::shared_ptr<Instance> instance;
        std::optional<Error> failure;
    };
    auto attempt = std::make_shared<Attempt>(Attempt{std::make_shared<Instance>(setup), std::nullopt});
    const auto load = [attempt, plugin = _plugin] {
        attempt->failure = attempt->instance->load(*plugin);
        if (attempt->failure) attempt->instance.reset();
    };
    if (auto failure = run(load, deadline, "creating an instance")) {
        _thread->post([attempt = std::move(attempt)] {}); // releases the instance on the thread
        return failure;
    }
    if (attempt->failure) return attempt->failure;
    _instance = std::move(attempt->instance);
    _buffers->connect(_instance->get());
    return std::nullopt;
}

std::optional<Error> InstanceKeeper::drop(const Deadline& deadline) {
    if (!_instance) return std::nullopt;
    auto end = [instance = std::move(_instance), buffers = _buffers]() mutable { instance.reset(); };
    if (auto failure = stuck()) {
        _late = _thread->post(std::move(end)); // runs when the earlier call has returned
        return failure;
    }
    return run(std::move(end), deadline, "destroying an instance");
}

std::optional<Error> InstanceKeeper::call(std::function<void(Instance&)> task, DuringRun duringRun,
                                          const Deadline& deadline, const std::string& doing) {
    if (auto failure = stuck()) return failure;
    const bool excludesRun = duringRun == DuringRun::Excluded;
    if (excludesRun) _instance->setExcludesRun(true);
    auto whole = [instance = _instance, buffers = _buffers, task = std::move(task), excludesRun] {
        task(*instance);
        if (excludesRun) instance->setExcludesRun(false);
    };
    return run(std::move(whole), deadline, doing);
}

std::optional<Error> InstanceKeeper::activate(const Deadline& deadline) {
    if (const Instance* instance = get(); instance != nullptr && instance->isActive()) return std::nullopt;
    return call([](Instance& instance) { instance.activate(); }, DuringRun::Excluded, deadline,
                "being activated");
}

std::optional<Error> InstanceKeeper::deactivate(const Deadline& deadline) {
    if (isEmpty()) return std::nullopt;
    if (const Instance* instance = get(); instance != nullptr && !instance->isActive()) return std::nullopt;
    return call([](Instance& instance) { instance.deactivate(); }, DuringRun::Excluded, deadline,
                "being deactivated");
}

std::optional<Error> InstanceKeeper::setBlockFrames(std::uint32_t frames, const Deadline& deadline) {
    return call([frames](Instance& instance) { instance.setBlockFrames(frames); }, DuringRun::Excluded,
                deadline, "changing the block length");
}

} // namespace platform::lv2

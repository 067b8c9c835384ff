// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/InstanceKeeper.hpp"

#include "platform/effects/lv2/runApart.hpp"

namespace platform::lv2 {

std::optional<Error> InstanceKeeper::call(std::function<void()> task, const Deadline& deadline,
                                          const std::string& doing) {
    std::shared_future<void> ended = runApart(std::move(task));
    if (ended.wait_until(deadline.end()) == std::future_status::ready) return std::nullopt;
    _stuck = std::move(ended);
    return unusable(_plugin, "it has not returned from " + doing + " in " +
                                 std::to_string(deadline.limit().count()) + " seconds");
}

std::optional<Error> InstanceKeeper::make(const Instance::Setup& setup, const Deadline& deadline) {
    if (_stuck.valid() && _stuck.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        return unusable(_plugin, "it still has not returned from an earlier call");
    }
    struct Attempt {
        Plugin plugin;
        std::shared_ptr<Instance> instance;
        std::optional<Error> failure;
    };
    const auto attempt = std::make_shared<Attempt>(
        Attempt{.plugin = _plugin, .instance = std::make_shared<Instance>(setup), .failure = std::nullopt});
    const auto load = [attempt] { attempt->failure = attempt->instance->load(attempt->plugin); };
    if (auto failure = call(load, deadline, "making an instance of itself")) return failure;
    if (attempt->failure) return attempt->failure;
    _instance = std::move(attempt->instance);
    _buffers->connect(_instance->get());
    return std::nullopt;
}

std::optional<Error> InstanceKeeper::drop(const Deadline& deadline) {
    if (!_instance) return std::nullopt;
    auto end = [instance = std::move(_instance), buffers = _buffers]() mutable { instance.reset(); };
    return call(std::move(end), deadline, "ending an instance of itself");
}

std::optional<Error> InstanceKeeper::callInstance(void (Instance::*operation)(), const Deadline& deadline,
                                                  const std::string& doing) {
    auto failure = call([instance = _instance, buffers = _buffers, operation] { ((*instance).*operation)(); },
                        deadline, doing);
    if (failure) _instance.reset();
    return failure;
}

std::optional<Error> InstanceKeeper::activate(const Deadline& deadline) {
    if (_instance->isActive()) return std::nullopt;
    return callInstance(&Instance::activate, deadline, "being activated");
}

std::optional<Error> InstanceKeeper::deactivate(const Deadline& deadline) {
    if (!_instance || !_instance->isActive()) return std::nullopt;
    return callInstance(&Instance::deactivate, deadline, "being deactivated");
}

} // namespace platform::lv2

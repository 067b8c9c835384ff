// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One living instance of a plug-in at one sample rate, with what it needs around it.
// Control side, but for what the comments give to the audio side. Private to platform/effects.
#pragma once

#include "platform/effects/lv2/Features.private.hpp"
#include "platform/effects/lv2/World.private.hpp"
#include "platform/foundation/Result.hpp"

namespace platform::lv2 {

class Instance {
  public:
    /// Load the plug-in's library and make an instance, or tell in a sentence why not. Not active yet.
    [[nodiscard]] static Result<std::unique_ptr<Instance>> make(std::shared_ptr<World> world,
                                                                const Plugin& plugin, double sampleRate,
                                                                std::uint32_t nominalFrames,
                                                                std::uint32_t sequenceBytes);
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    /// Give the plug-in's own operations. Audio side: `connect_port` and `run` alone.
    [[nodiscard]] LilvInstance* get() const noexcept { return _instance; }
    [[nodiscard]] double sampleRate() const noexcept { return _sampleRate; }
    [[nodiscard]] Worker& worker() noexcept { return _worker; }
    [[nodiscard]] const Features& features() const noexcept { return _features; }

    void activate();
    void deactivate();
    [[nodiscard]] bool isActive() const noexcept { return _isActive; }

  private:
    Instance(std::shared_ptr<World> world, double sampleRate, std::uint32_t nominalFrames,
             std::uint32_t sequenceBytes);

    const std::shared_ptr<World> _world;
    const double _sampleRate;
    ScratchDirectory _scratch;
    Worker _worker;
    Features _features;
    LilvInstance* _instance = nullptr; // owned; freed under the world's mutex
    bool _isActive = false;
};

} // namespace platform::lv2

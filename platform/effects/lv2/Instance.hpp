// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One live instance of a plug-in at one sample rate, with what it needs around it. Control side, except for
// what the comments assign to the audio side.
#pragma once

#include "platform/effects/lv2/Features.hpp"
#include "platform/effects/lv2/Library.hpp"
#include "platform/effects/lv2/World.hpp"
#include "platform/foundation/Result.hpp"

namespace platform::lv2 {

/// Returns the reason, for a person, why the host cannot run `plugin` whatever its library contains.
[[nodiscard]] std::optional<Error> refusal(const Plugin& plugin);
/// Returns the error of an effect that cannot be used for that reason.
[[nodiscard]] Error unusable(const Plugin& plugin, const std::string& reason);

class Instance {
  public:
    /// What an instance is told when it is created.
    struct Setup {
        double sampleRate = 0;
        std::uint32_t blockFrames = 0;   // of a usual block, and at most of any
        std::uint32_t sequenceBytes = 0; // that its event ports hold
    };

    explicit Instance(const Setup& setup);
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    /// Loads the plug-in's library and creates the instance, not active yet, or returns the reason why not.
    /// Call once. Calls into the plug-in without a lock, since it may not return.
    [[nodiscard]] std::optional<Error> load(const Plugin& plugin);

    /// Returns the plug-in's own operations. Audio side: only `connect_port` and `run`.
    [[nodiscard]] LilvInstance* get() noexcept { return &_instance; }
    [[nodiscard]] double sampleRate() const noexcept { return _setup.sampleRate; }
    [[nodiscard]] Worker& worker() noexcept { return _worker; }
    [[nodiscard]] const Features& features() const noexcept { return _features; }

    /// Returns the frames of a usual block that the instance knows of, which no block exceeds. Both sides: it
    /// changes only while no `run` can be in progress.
    [[nodiscard]] std::uint32_t blockFrames() const noexcept { return _setup.blockFrames; }
    /// Returns whether the plug-in can be told of another block length.
    [[nodiscard]] bool takesBlockFrames() const noexcept;
    /// Returns the block length for which the instance was made.
    [[nodiscard]] std::uint32_t longestBlockFrames() const noexcept { return _longestBlockFrames; }
    /// Tells the plug-in of another block length, never of one longer than the longest: some plug-ins keep
    /// the memory that they have. No `run` may be in progress.
    void setBlockFrames(std::uint32_t frames);

    void activate();
    void deactivate();
    [[nodiscard]] bool isActive() const noexcept { return _isActive; }

  private:
    Setup _setup;
    const std::uint32_t _longestBlockFrames = _setup.blockFrames;
    ScratchDirectory _scratch;
    Worker _worker;
    Features _features;
    LibraryEntry _entry;
    LilvInstance _instance{}; // filled here, not by lilv
    const LV2_Options_Interface* _options = nullptr;
    bool _isActive = false;
};

} // namespace platform::lv2

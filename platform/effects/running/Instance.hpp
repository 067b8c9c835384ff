// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An instance of a plug-in at one sample rate, with its features and its worker. Operations that call the
// plug-in run on its library's thread, all others on the control side, except where the comments state
// otherwise.
#pragma once

#include "platform/effects/lv2/World.hpp"
#include "platform/effects/running/Features.hpp"
#include "platform/effects/running/Library.hpp"
#include "platform/foundation/Result.hpp"

#include <atomic>

namespace platform::lv2 {

class Instance {
  public:
    /// The parameters with which an instance is created.
    struct Setup {
        double sampleRate = 0;
        std::uint32_t blockFrames = 0;   // usual and maximum block length
        std::uint32_t sequenceBytes = 0; // size of the largest event port
    };

    explicit Instance(const Setup& setup);
    ~Instance();
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    /// Loads the plug-in's library and creates the instance, which is not active yet, or returns the reason
    /// why that failed. Must be called once only, and without a mutex held, because the plug-in may not
    /// return.
    [[nodiscard]] std::optional<Error> load(const Plugin& plugin);

    /// Returns the LilvInstance. The audio thread calls only `connect_port` and `run` on it.
    [[nodiscard]] LilvInstance* get() noexcept { return &_instance; }
    [[nodiscard]] double sampleRate() const noexcept { return _setup.sampleRate; }
    [[nodiscard]] Worker& worker() noexcept { return _worker; }
    [[nodiscard]] const Features& features() const noexcept { return _features; }

    /// Returns the block length that the instance has been given. No block may be longer. Any thread, because
    /// the length changes only while no `run` can be in progress.
    [[nodiscard]] std::uint32_t blockFrames() const noexcept { return _setup.blockFrames; }
    /// Returns whether the plug-in accepts changes of the block length.
    [[nodiscard]] bool takesBlockFrames() const noexcept;
    /// Returns whether `setBlockFrames(frames)` would change the block length.
    [[nodiscard]] bool differsFrom(std::uint32_t frames) const noexcept;
    /// Changes the block length, to at most `longestBlockFrames()`, because some plug-ins do not enlarge
    /// their buffers. No `run` may be in progress.
    void setBlockFrames(std::uint32_t frames);

    void activate();
    void deactivate();
    [[nodiscard]] bool isActive() const noexcept { return _isActive; }

    /// Set and return whether a call in progress excludes `run`. Data that such a call changes is read only
    /// while no such call is in progress. Any thread.
    void setExcludesRun(bool doesExclude) noexcept { _excludesRun = doesExclude; }
    [[nodiscard]] bool excludesRun() const noexcept { return _excludesRun; }

  private:
    Setup _setup;
    const std::uint32_t _longestBlockFrames = _setup.blockFrames;
    ScratchDirectory _scratch;
    Worker _worker;
    Features _features;
    LibraryEntry _entry;
    LilvInstance _instance{}; // filled by `load`, not by lilv
    const LV2_Options_Interface* _options = nullptr;
    bool _isActive = false;
    // Shared between threads: set before a call that excludes `run`, cleared by the library's thread after
    // the call.
    std::atomic<bool> _excludesRun{false};
};

} // namespace platform::lv2

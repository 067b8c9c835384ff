// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The features that the host offers a plug-in, with everything they point to.
#pragma once

#include "platform/effects/lv2/Worker.hpp"

#include <array>
#include <filesystem>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <mutex>
#include <string>
#include <vector>

namespace platform::lv2 {

/// No instance is told of a longer block than this.
inline constexpr std::uint32_t LongestBlock = 8192;

/// Returns the first of `required` that the host lacks; empty if it has all.
[[nodiscard]] std::string lackedFeature(const std::vector<std::string>& required);

/// The log of LV2, which goes to standard error; its traces are dropped. Any thread except the audio thread.
[[nodiscard]] LV2_Log_Log* logFeature() noexcept;

/// A directory for the files that a plug-in creates; created at first use, removed with the object.
class ScratchDirectory {
  public:
    ScratchDirectory() = default;
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    /// Returns the absolute path of `name` in it, with all parent directories created. Any thread.
    [[nodiscard]] std::string pathFor(const std::string& name);

  private:
    std::mutex _mutex;
    std::filesystem::path _path; // guarded by _mutex; empty until created
};

class Features {
  public:
    /// Collects the features for an instance at `sampleRate` whose blocks have up to and usually
    /// `blockFrames` frames, and whose event ports hold up to `sequenceBytes`.
    Features(double sampleRate, std::uint32_t blockFrames, std::uint32_t sequenceBytes, Worker& worker,
             ScratchDirectory& scratch);
    Features(const Features&) = delete;
    Features& operator=(const Features&) = delete;

    /// Returns the list for `instantiate`, ended by null; valid as long as this object.
    [[nodiscard]] const LV2_Feature* const* list() const noexcept { return _list.data(); }
    /// Returns the list for a restore of state.
    [[nodiscard]] const LV2_Feature* const* listForRestore() const noexcept { return _listForRestore.data(); }
    /// Changes the block length and returns the options that state it, ended by an empty one; valid until the
    /// next call.
    [[nodiscard]] std::vector<LV2_Options_Option> changeBlockFrames(std::uint32_t frames);

  private:
    const std::int32_t _minimumFrames = 1; // the last piece of a block that is split
    std::int32_t _blockFrames, _sequenceBytes;
    float _sampleRate;
    LV2_State_Make_Path _makePath;
    LV2_State_Free_Path _freePath;
    std::vector<LV2_Options_Option> _options;
    std::vector<LV2_Feature> _features;
    std::vector<const LV2_Feature*> _list, _listForRestore;
};

} // namespace platform::lv2

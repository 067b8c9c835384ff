// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The LV2 features that the host passes to a plug-in, and the data that they point to.
#pragma once

#include "platform/effects/running/Worker.hpp"

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

/// The longest block length, in frames, for which an instance is created.
inline constexpr std::uint32_t LongestBlock = 8192;

/// Returns the LV2 log feature, which writes to standard error and drops trace messages. Any thread except
/// the audio thread.
[[nodiscard]] LV2_Log_Log* logFeature() noexcept;

/// A directory for the files that a plug-in creates. It is created at first use and removed by the
/// destructor.
class ScratchDirectory {
  public:
    ScratchDirectory() = default;
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    /// Returns the absolute path of `name` in the directory, and creates all parent directories. Any thread.
    [[nodiscard]] std::string pathFor(const std::string& name);

  private:
    std::mutex _mutex;
    std::filesystem::path _path; // guarded by _mutex; empty until created
};

class Features {
  public:
    /// Creates the features for an instance at `sampleRate`, with `blockFrames` as its usual and maximum
    /// block length and event ports of up to `sequenceBytes` bytes.
    Features(double sampleRate, std::uint32_t blockFrames, std::uint32_t sequenceBytes, Worker& worker,
             ScratchDirectory& scratch);
    Features(const Features&) = delete;
    Features& operator=(const Features&) = delete;

    /// Returns the null-terminated list for `instantiate`; valid as long as this object.
    [[nodiscard]] const LV2_Feature* const* list() const noexcept { return _list.data(); }
    /// Returns the null-terminated list for restoring state, with a worker feature for that purpose.
    [[nodiscard]] const LV2_Feature* const* listForRestore() const noexcept { return _listForRestore.data(); }
    /// Changes the block length and returns the options that state it, terminated by an empty option. They
    /// are valid until the next call.
    [[nodiscard]] std::vector<LV2_Options_Option> changeBlockFrames(std::uint32_t frames);

  private:
    const std::int32_t _minimumFrames = 1; // the last piece of a split block may be this short
    std::int32_t _blockFrames, _sequenceBytes;
    float _sampleRate;
    LV2_State_Make_Path _makePath;
    LV2_State_Free_Path _freePath;
    std::vector<LV2_Options_Option> _options;
    std::vector<LV2_Feature> _features;
    std::vector<const LV2_Feature*> _list, _listForRestore;
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loads the library of a plug-in. lilv could do it too, but does not report the loader's reason for a failure
// and unloads with the last instance, which libraries that start threads or register exit handlers do not
// survive. Any thread except the audio thread.
#pragma once

#include "platform/foundation/Result.hpp"

#include <lv2/core/lv2.h>
#include <string>

namespace platform::lv2 {

/// One plug-in's entry in its library. The library stays loaded to the end of the process.
class LibraryEntry {
  public:
    /// Loads the library at `path` and looks for the plug-in `uri`, or returns the reason why not, without a
    /// full stop. `bundlePath` ends in "/"; `features` must outlive the entry.
    [[nodiscard]] static Result<LibraryEntry> find(const std::string& path, const std::string& bundlePath,
                                                   const std::string& uri,
                                                   const LV2_Feature* const* features);
    LibraryEntry() = default;

    [[nodiscard]] const LV2_Descriptor* descriptor() const noexcept { return _descriptor; }
    /// Releases what the library created for this entry; no instance may be left.
    void close() noexcept;

  private:
    const LV2_Descriptor* _descriptor = nullptr;
    const LV2_Lib_Descriptor* _library = nullptr; // of a library with one entry point for all its plug-ins
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loads the library of a plug-in. lilv could load it too, but lilv does not report why loading failed, and it
// unloads the library with the last instance, which crashes libraries that have started threads or registered
// exit handlers. Any thread except the audio thread.
#pragma once

#include "platform/foundation/Result.hpp"

#include <lv2/core/lv2.h>
#include <string>

namespace platform::lv2 {

/// The entry of a plug-in in its library. The library stays loaded until the process exits.
class LibraryEntry {
  public:
    /// Loads the library at `path` and finds the plug-in `uri` in it, or returns the reason why that failed,
    /// without a full stop. `bundlePath` must end in "/"; `features` must outlive the entry.
    [[nodiscard]] static Result<LibraryEntry> find(const std::string& path, const std::string& bundlePath,
                                                   const std::string& uri,
                                                   const LV2_Feature* const* features);
    LibraryEntry() = default;

    [[nodiscard]] const LV2_Descriptor* descriptor() const noexcept { return _descriptor; }
    /// Releases the library's descriptor. No instance may exist any more.
    void close() noexcept;

  private:
    const LV2_Descriptor* _descriptor = nullptr;
    const LV2_Lib_Descriptor* _library = nullptr; // null if the library has no lv2_lib_descriptor
};

} // namespace platform::lv2

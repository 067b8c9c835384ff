// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/Library.hpp"

#include <dlfcn.h>

namespace platform::lv2 {
namespace {

Error failure(const std::string& reason) {
    return {"LV2", 6, reason};
}

} // namespace

Result<LibraryEntry> LibraryEntry::find(const std::string& path, const std::string& bundlePath,
                                        const std::string& uri, const LV2_Feature* const* features) {
    void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) return failure("its library cannot be loaded: " + std::string(::dlerror()));
    const auto descriptorAt = reinterpret_cast<LV2_Descriptor_Function>(::dlsym(library, "lv2_descriptor"));
    const auto describeLibrary =
        reinterpret_cast<LV2_Lib_Descriptor_Function>(::dlsym(library, "lv2_lib_descriptor"));
    LibraryEntry entry;
    if (describeLibrary != nullptr) {
        entry._library = describeLibrary(bundlePath.c_str(), features);
        if (entry._library == nullptr) {
            return failure("its library " + path + " returned no library descriptor");
        }
    } else if (descriptorAt == nullptr) {
        return failure("its library " + path + " has no entry point for LV2");
    }
    for (std::uint32_t i = 0;; ++i) {
        entry._descriptor = entry._library != nullptr ? entry._library->get_plugin(entry._library->handle, i)
                                                      : descriptorAt(i);
        if (entry._descriptor == nullptr) {
            entry.close();
            return failure("its library " + path + " does not contain it");
        }
        if (uri == entry._descriptor->URI) return entry;
    }
}

void LibraryEntry::close() noexcept {
    if (_library != nullptr && _library->cleanup != nullptr) _library->cleanup(_library->handle);
    _library = nullptr;
    _descriptor = nullptr;
}

} // namespace platform::lv2

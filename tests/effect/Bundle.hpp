// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What any host does to the built bundle's libraries: open them, number URIs, hand over controls.
#pragma once

#include "effect/dsp/Parameters.hpp"
#include "effect/lv2/Ports.hpp"

#include <cstdlib>
#include <dlfcn.h>
#include <lv2/core/lv2.h>
#include <lv2/urid/urid.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>

namespace tonewright::effect::test {

/// Returns the bundle's folder, with a slash at its end.
[[nodiscard]] inline std::string bundlePath() {
    const char* const build = std::getenv("TONEWRIGHT_BUILD_DIR");
    return std::string{build == nullptr ? "." : build} + "/lib/lv2/tonewright.lv2/";
}

/// A library of the bundle, and the descriptor that it gives.
template <typename Descriptor>
class Library {
  public:
    Library(const std::string& file, const char* entry)
        : library_{dlopen((bundlePath() + file).c_str(), RTLD_NOW | RTLD_LOCAL)} {
        if (library_ == nullptr) {
            throw std::runtime_error{dlerror()};
        }
        using Entry = const Descriptor* (*)(std::uint32_t);
        descriptor_ = reinterpret_cast<Entry>(dlsym(library_, entry))(0);
    }
    ~Library() { dlclose(library_); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    const Descriptor* operator->() const { return descriptor_; }
    const Descriptor* get() const { return descriptor_; }

  private:
    void* library_;
    const Descriptor* descriptor_ = nullptr;
};

/// Numbers URIs, as hosts do.
class UridTable {
  public:
    LV2_URID operator()(const std::string& uri) {
        return numbers_.try_emplace(uri, static_cast<LV2_URID>(numbers_.size() + 1)).first->second;
    }
    [[nodiscard]] const LV2_Feature* feature() const { return &feature_; }
    [[nodiscard]] const LV2_URID_Map& map() const { return map_; }

  private:
    std::map<std::string, LV2_URID> numbers_;
    LV2_URID_Map map_{this, [](LV2_URID_Map_Handle self, const char* uri) {
                          return (*static_cast<UridTable*>(self))(uri);
                      }};
    LV2_Feature feature_{LV2_URID__map, &map_};
};

} // namespace tonewright::effect::test

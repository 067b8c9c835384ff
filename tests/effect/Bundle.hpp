// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loads the built bundle's libraries as a host does: opens them, maps URIs and passes control values.
#pragma once

#include "effect/dsp/Parameters.hpp"
#include "effect/lv2/Ports.hpp"
#include "tests/support/testing.hpp"

#include <lv2/core/lv2.h>
#include <lv2/urid/urid.h>

namespace tonewright::effect::test {

/// Returns the path of the bundle's folder, with a trailing slash.
[[nodiscard]] inline std::string bundlePath() {
    const char* const build = std::getenv("TONEWRIGHT_BUILD_DIR");
    return std::string{build == nullptr ? "." : build} + "/lib/lv2/tonewright.lv2/";
}

/// A library of the bundle, and the descriptor that its entry function returns.
template <typename Descriptor>
class Library : tonewright::test::Uncopied {
  public:
    Library(const std::string& file, const char* entry)
        : _library{dlopen((bundlePath() + file).c_str(), RTLD_NOW | RTLD_LOCAL)} {
        if (_library == nullptr) {
            throw std::runtime_error{dlerror()};
        }
        using Entry = const Descriptor* (*)(std::uint32_t);
        _descriptor = reinterpret_cast<Entry>(dlsym(_library, entry))(0);
    }
    ~Library() { dlclose(_library); }

    const Descriptor* operator->() const { return _descriptor; }
    const Descriptor* get() const { return _descriptor; }

  private:
    void* _library;
    const Descriptor* _descriptor = nullptr;
};

/// Maps URIs to numbers, as hosts do.
class UridTable {
  public:
    LV2_URID operator()(const std::string& uri) {
        return _numbers.try_emplace(uri, static_cast<LV2_URID>(_numbers.size() + 1)).first->second;
    }
    [[nodiscard]] const LV2_Feature* feature() const { return &_feature; }
    [[nodiscard]] const LV2_URID_Map& map() const { return _map; }

  private:
    std::map<std::string, LV2_URID> _numbers;
    LV2_URID_Map _map{this, [](LV2_URID_Map_Handle self, const char* uri) {
                          return (*static_cast<UridTable*>(self))(uri);
                      }};
    LV2_Feature _feature{LV2_URID__map, &_map};
};

} // namespace tonewright::effect::test

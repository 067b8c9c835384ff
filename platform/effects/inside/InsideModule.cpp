// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/inside/InsideModule.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/product.hpp"

#include <dlfcn.h>

namespace platform::lv2 {
namespace {

// Gives the library the numbers of the program's own map, because atoms that contain them pass between an
// effect inside the program and an interface in a process of its own.
class ProgramUrids final : public UridSource {
  public:
    [[nodiscard]] LV2_URID map(std::string_view uri) override { return UridMap::shared().map(uri); }
    [[nodiscard]] std::string unmap(LV2_URID urid) override {
        const char* uri = UridMap::shared().unmap(urid);
        return uri == nullptr ? std::string() : uri;
    }
};

Result<InsideModule> open() {
    const std::string path = Bundle::main().privateFrameworksPath() + "/" + product::InsideModule;
    void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* symbol = library == nullptr ? nullptr : ::dlsym(library, OpenInsideModuleSymbol);
    if (symbol == nullptr) {
        return Error("LV2", 6,
                     "The library that runs effects inside the program cannot be opened: " +
                         std::string(::dlerror()));
    }
    InsideModule module;
    reinterpret_cast<OpenInsideModule*>(symbol)(std::make_unique<ProgramUrids>(), module);
    return module;
}

} // namespace

Result<const InsideModule*> insideModule() {
    static const Result<InsideModule> module = open();
    if (!module) return module.error();
    return &module.value();
}

} // namespace platform::lv2

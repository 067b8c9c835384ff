// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/detail/WebEngine.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"

#include <dlfcn.h>

namespace platform {
namespace {

// Opened once and never closed: the engine registers types that stay for the life of the process.
MakeWebEngineView* openModule() {
    const std::string path = Bundle::main().privateFrameworksPath() + "/libtonewright-web.so";
    void* module = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    void* symbol = module == nullptr ? nullptr : dlsym(module, MakeWebEngineViewSymbol);
    if (symbol == nullptr) warn("The web engine cannot be opened: " + std::string(dlerror()));
    return reinterpret_cast<MakeWebEngineView*>(symbol);
}

} // namespace

std::unique_ptr<WebEngineView> makeWebEngineView(WebClient& client) {
    static MakeWebEngineView* const make = openModule();
    return std::unique_ptr<WebEngineView>(make == nullptr ? nullptr : make(client));
}

} // namespace platform

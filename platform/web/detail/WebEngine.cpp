// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/detail/WebEngine.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"
#include "platform/ui/webSandbox.hpp"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {
namespace {

// The program that builds sandboxes. WebKit expects it at this path too.
constexpr const char* BubblewrapPath = "/usr/bin/bwrap";

// Returns whether this system allows the kind of sandbox in which WebKit runs its processes. Some kernels and
// containers do not.
bool sandboxCanBeBuilt() {
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&quiet, descriptor, "/dev/null", O_RDWR, 0);
    }
    std::array<std::string, 5> words = {BubblewrapPath, "--ro-bind", "/", "/", "/bin/true"};
    std::array<char*, 6> arguments{};
    for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
    pid_t process = 0;
    int status = -1;
    if (posix_spawn(&process, BubblewrapPath, &quiet, nullptr, arguments.data(), environ) == 0) {
        while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
        }
    }
    posix_spawn_file_actions_destroy(&quiet);
    return status == 0;
}

// Turns WebKit's sandbox off where it cannot be built, because WebKit would then end the program. The
// variable was already set at startup, so changing it here does not reallocate `environ` while other threads
// read it.
void giveUpSandboxWhereItFails() {
    const char* disabled = std::getenv(SandboxVariable);
    if (disabled == nullptr || std::strcmp(disabled, "0") != 0 || sandboxCanBeBuilt()) return;
    setenv(SandboxVariable, "1", 1);
    warn("This system does not let users create a sandbox; pages are shown without one.");
}

// Opens the module, which is never closed, because WebKit registers GObject types that cannot be
// unregistered.
MakeWebEngineView* openModule() {
    giveUpSandboxWhereItFails();
    const std::string path = Bundle::main().privateFrameworksPath() + "/" + product::WebModule;
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

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/confinement.hpp"

#include "platform/foundation/detail/callFilter.hpp"
#include "platform/foundation/detail/fileRules.hpp"

#include <algorithm>
#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>

namespace platform {
namespace {

#if defined(TONEWRIGHT_ASAN) || defined(TONEWRIGHT_TSAN)
constexpr bool MemoryIsLimited = false; // their tables are larger than any limit
#else
constexpr bool MemoryIsLimited = true;
#endif

bool limit(decltype(RLIMIT_CPU) resource, std::uint64_t value, std::uint64_t grace = 0) {
    if (value == ResourceLimits::None) return true;
    rlimit limits{};
    if (::getrlimit(resource, &limits) != 0) return false;
    const rlim_t most = std::min<rlim_t>(limits.rlim_max, value + grace);
    limits = {std::min<rlim_t>(most, value), most};
    return ::setrlimit(resource, &limits) == 0;
}

} // namespace

bool limitResources(const ResourceLimits& limits) {
    return limit(RLIMIT_CORE, 0) && limit(RLIMIT_CPU, limits.processorSeconds, 1) &&
           limit(RLIMIT_RTTIME, limits.realtimeMicroseconds, limits.realtimeMicroseconds) &&
           limit(RLIMIT_FSIZE, limits.fileBytes) && limit(RLIMIT_NOFILE, limits.descriptors) &&
           (!MemoryIsLimited || limit(RLIMIT_DATA, limits.memoryBytes));
}

bool endWithStarter() {
    return ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0;
}

bool confineTo(const ReachableFiles& files, Sockets sockets) {
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && allowFiles(files, sockets) &&
           refuseCalls(sockets);
}

ConfinementSupport confinementSupport() noexcept {
    return {.landlock = landlockVersion(), .hasSeccomp = hasSeccomp()};
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/confinement.hpp"

#include "platform/foundation/Descriptor.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/landlock.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {
namespace {

#if defined(TONEWRIGHT_ASAN) || defined(TONEWRIGHT_TSAN)
constexpr bool MemoryIsLimited = false; // their tables are larger than any limit
#else
constexpr bool MemoryIsLimited = true;
#endif

bool limit(decltype(RLIMIT_CPU) resource, std::uint64_t value, std::uint64_t grace = 0) {
    rlimit limits{};
    if (::getrlimit(resource, &limits) != 0) return false;
    const rlim_t most = std::min<rlim_t>(limits.rlim_max, value + grace);
    limits = {std::min<rlim_t>(most, value), most};
    return ::setrlimit(resource, &limits) == 0;
}

// All kinds of access that Landlock controls in this version of the kernel's interface.
std::uint64_t handledAccess(long version) {
    std::uint64_t access = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1; // the first version's
    if (version >= 2) access |= 1U << 13U;                          // into another directory
    if (version >= 3) access |= 1U << 14U;                          // truncate
    return access;
}

bool allowReading(const std::vector<std::string>& places) {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) return true; // an older kernel, or Landlock is disabled
    const landlock_ruleset_attr handled = {.handled_access_fs = handledAccess(version)};
    const Descriptor rules(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0)));
    if (!rules) return false;
    for (const std::string& place : places) {
        const Descriptor directory(::open(place.c_str(), O_PATH | O_CLOEXEC));
        if (!directory) continue;
        const landlock_path_beneath_attr rule = {.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE |
                                                                   LANDLOCK_ACCESS_FS_READ_DIR,
                                                 .parent_fd = directory.get()};
        if (::syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) != 0) {
            return false;
        }
    }
    return ::syscall(SYS_landlock_restrict_self, rules.get(), 0) == 0;
}

#if defined(__x86_64__)
constexpr std::uint32_t Machine = AUDIT_ARCH_X86_64;
constexpr std::uint32_t FirstForeignCall = 0x40000000; // the x32 calls, other numbers for the same
#elif defined(__aarch64__)
constexpr std::uint32_t Machine = AUDIT_ARCH_AARCH64;
constexpr std::uint32_t FirstForeignCall = 0xFFFFFFFF;
#else
constexpr std::uint32_t Machine = 0; // no filter for other machines
constexpr std::uint32_t FirstForeignCall = 0xFFFFFFFF;
#endif

constexpr auto RefusedCalls = std::to_array<std::uint32_t>({
#ifdef SYS_fork
    SYS_fork,
    SYS_vfork,
#endif
    SYS_execve,
    SYS_execveat,
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    SYS_bind,
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_kill,
    SYS_tkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
    SYS_pidfd_open,
    SYS_pidfd_send_signal,
    SYS_io_uring_setup,
    SYS_io_uring_enter,
    SYS_io_uring_register,
    SYS_mount,
    SYS_umount2,
    SYS_unshare,
    SYS_setns,
    SYS_bpf,
    SYS_perf_event_open,
    SYS_userfaultfd,
    SYS_keyctl,
    SYS_add_key,
    SYS_request_key,
    SYS_open_by_handle_at,
});

constexpr std::uint32_t refusal(int error) {
    return SECCOMP_RET_ERRNO | (static_cast<std::uint32_t>(error) & SECCOMP_RET_DATA);
}

void jump(std::vector<sock_filter>& program, std::uint16_t test, std::uint32_t value, std::uint8_t skipIfTrue,
          std::uint8_t skipIfFalse) {
    program.push_back(
        BPF_JUMP(static_cast<std::uint16_t>(BPF_JMP | test | BPF_K), value, skipIfTrue, skipIfFalse));
}
void load(std::vector<sock_filter>& program, std::size_t offset) {
    program.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset)));
}
void answer(std::vector<sock_filter>& program, std::uint32_t value) {
    program.push_back(BPF_STMT(BPF_RET | BPF_K, value));
}

// Continues only for calls other than `call`, which is allowed if its first argument passes the test.
void allowIfArgument(std::vector<sock_filter>& program, std::uint32_t call, std::uint16_t test,
                     std::uint32_t value) {
    jump(program, BPF_JEQ, call, 0, 4);
    load(program, offsetof(seccomp_data, args));
    jump(program, test, value, 0, 1);
    answer(program, SECCOMP_RET_ALLOW);
    answer(program, refusal(EPERM));
}

bool refuseCalls() {
    if (Machine == 0) return true;
    std::vector<sock_filter> program;
    load(program, offsetof(seccomp_data, arch));
    jump(program, BPF_JEQ, Machine, 1, 0);
    answer(program, SECCOMP_RET_KILL_PROCESS);
    load(program, offsetof(seccomp_data, nr));
    jump(program, BPF_JGE, FirstForeignCall, 0, 1);
    answer(program, refusal(ENOSYS));
    for (const std::uint32_t call : RefusedCalls) {
        jump(program, BPF_JEQ, call, 0, 1);
        answer(program, refusal(EPERM));
    }
    // Its arguments are in memory, where a filter does not see them; the C library then uses clone.
    jump(program, BPF_JEQ, SYS_clone3, 0, 1);
    answer(program, refusal(ENOSYS));
    allowIfArgument(program, SYS_clone, BPF_JSET, CLONE_THREAD);
    allowIfArgument(program, SYS_tgkill, BPF_JEQ, static_cast<std::uint32_t>(::getpid()));
    allowIfArgument(program, SYS_prlimit64, BPF_JEQ, 0); // its own limits
    answer(program, SECCOMP_RET_ALLOW);
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0 ||
           errno == EINVAL; // none in this kernel
}

} // namespace

bool limitResources(const ResourceLimits& limits) {
    return ::prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && limit(RLIMIT_CORE, 0) &&
           limit(RLIMIT_CPU, limits.processorSeconds, 1) && limit(RLIMIT_FSIZE, limits.fileBytes) &&
           limit(RLIMIT_NOFILE, limits.descriptors) &&
           (!MemoryIsLimited || limit(RLIMIT_DATA, limits.memoryBytes));
}

bool confineToReading(const std::vector<std::string>& places) {
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && allowReading(places) && refuseCalls();
}

} // namespace platform

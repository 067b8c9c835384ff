// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/callFilter.hpp"

#include "platform/foundation/detail/fileRules.hpp"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <initializer_list>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/sched.h>
#include <linux/seccomp.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

#if defined(__x86_64__)
constexpr std::uint32_t Machine = AUDIT_ARCH_X86_64;
constexpr std::uint32_t FirstForeignCall = 0x40000000; // the x32 ABI has its own numbers for system calls
#elif defined(__aarch64__)
constexpr std::uint32_t Machine = AUDIT_ARCH_AARCH64;
constexpr std::uint32_t FirstForeignCall = 0xFFFFFFFF;
#else
constexpr std::uint32_t Machine = 0; // there is no filter for other machines
constexpr std::uint32_t FirstForeignCall = 0xFFFFFFFF;
#endif

constexpr auto RefusedCalls = std::to_array<std::uint32_t>({
#ifdef SYS_fork
    SYS_fork,
    SYS_vfork,
#endif
    SYS_execve,
    SYS_execveat,
    SYS_bind,
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_kill,
    SYS_tkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
    SYS_pidfd_open,
    SYS_pidfd_getfd,
    SYS_pidfd_send_signal,
    SYS_io_uring_setup,
    SYS_io_uring_enter,
    SYS_io_uring_register,
    SYS_mount,
    SYS_umount2,
    SYS_open_tree,
    SYS_move_mount,
    SYS_fsopen,
    SYS_fspick,
    SYS_mount_setattr,
    SYS_pivot_root,
    SYS_chroot,
    SYS_unshare,
    SYS_setns,
    SYS_bpf,
    SYS_perf_event_open,
    SYS_userfaultfd,
    SYS_keyctl,
    SYS_add_key,
    SYS_request_key,
    SYS_open_by_handle_at,
    SYS_shmget, // shared memory and queues that are not files, which Landlock does not control
    SYS_shmat,
    SYS_semget,
    SYS_msgget,
    SYS_mq_open,
// Attributes of files, which Landlock does not control either. fchmod, which works only on open files, stays
// allowed, because copying files needs it.
#ifdef SYS_chmod
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
    SYS_futimesat,
#endif
    SYS_fchmodat,
    452, // fchmodat2; older kernel headers lack its name
    SYS_fchown,
    SYS_fchownat,
    SYS_utimensat,
    SYS_setxattr,
    SYS_lsetxattr,
    SYS_fsetxattr,
    SYS_removexattr,
    SYS_lremovexattr,
    SYS_fremovexattr,
});

constexpr auto CallsForSockets = std::to_array<std::uint32_t>({SYS_socket, SYS_socketpair, SYS_connect});

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

void loadArgument(std::vector<sock_filter>& program, std::size_t index) {
    load(program, offsetof(seccomp_data, args) + index * sizeof(std::uint64_t)); // the lower 32 bits
}

// Continues only for calls other than `call`, which is allowed if its first argument passes the test.
void allowIfArgument(std::vector<sock_filter>& program, std::uint32_t call, std::uint16_t test,
                     std::uint32_t value) {
    jump(program, BPF_JEQ, call, 0, 4);
    loadArgument(program, 0);
    jump(program, test, value, 0, 1);
    answer(program, SECCOMP_RET_ALLOW);
    answer(program, refusal(EPERM));
}

// Refuses the call if its second argument is `value`.
void refuseIfArgument(std::vector<sock_filter>& program, std::uint32_t call, std::uint32_t value) {
    jump(program, BPF_JEQ, call, 0, 4);
    loadArgument(program, 1);
    jump(program, BPF_JEQ, value, 0, 1);
    answer(program, refusal(EPERM));
    load(program, offsetof(seccomp_data, nr));
}

// Refuses the call if its flags for opening a file, the argument at `index`, would truncate a file that is
// opened only for reading.
void refuseEmptying(std::vector<sock_filter>& program, std::uint32_t call, std::size_t index) {
    jump(program, BPF_JEQ, call, 0, 5);
    loadArgument(program, index);
    program.push_back(BPF_STMT(BPF_ALU | BPF_AND | BPF_K, O_TRUNC | O_ACCMODE));
    jump(program, BPF_JEQ, O_TRUNC, 0, 1);
    answer(program, refusal(EPERM));
    load(program, offsetof(seccomp_data, nr));
}

} // namespace

// Passes a null pointer as the filter. A kernel that supports filters tries to read it and fails with EFAULT;
// any other kernel fails with another error.
bool hasSeccomp() noexcept {
    return Machine != 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, nullptr) != 0 && errno == EFAULT;
}

bool refuseCalls(Sockets sockets) {
    if (!hasSeccomp()) return true;
    std::vector<sock_filter> program;
    load(program, offsetof(seccomp_data, arch));
    jump(program, BPF_JEQ, Machine, 1, 0);
    answer(program, SECCOMP_RET_KILL_PROCESS);
    load(program, offsetof(seccomp_data, nr));
    jump(program, BPF_JGE, FirstForeignCall, 0, 1);
    answer(program, refusal(ENOSYS));
    const auto refuse = [&program](const auto& calls) {
        for (const std::uint32_t call : calls) {
            jump(program, BPF_JEQ, call, 0, 1);
            answer(program, refusal(EPERM));
        }
    };
    refuse(RefusedCalls);
    if (sockets == Sockets::None) refuse(CallsForSockets);
    // These calls pass their arguments in memory, which a filter cannot read. Callers fall back to clone and
    // openat.
    for (const std::uint32_t call : std::initializer_list<std::uint32_t>{SYS_clone3, SYS_openat2}) {
        jump(program, BPF_JEQ, call, 0, 1);
        answer(program, refusal(ENOSYS));
    }
    // The first versions of Landlock do not restrict truncating files.
    if (landlockVersion() < FirstLandlockThatTruncates) {
        jump(program, BPF_JEQ, SYS_truncate, 0, 1);
        answer(program, refusal(EPERM));
    }
#ifdef SYS_open
    refuseEmptying(program, SYS_open, 1);
#endif
    refuseEmptying(program, SYS_openat, 2);
    // Forbids typing into the terminal that messages go to, and sending signals through a descriptor.
    for (const std::uint32_t request :
         std::initializer_list<std::uint32_t>{TIOCSTI, TIOCLINUX, FIOSETOWN, SIOCSPGRP}) {
        refuseIfArgument(program, SYS_ioctl, request);
    }
    for (const std::uint32_t command :
         std::initializer_list<std::uint32_t>{F_SETOWN, F_SETOWN_EX, F_SETSIG}) {
        refuseIfArgument(program, SYS_fcntl, command);
    }
    if (sockets == Sockets::Local) { // of which connecting needs no check, because there are no others
        allowIfArgument(program, SYS_socket, BPF_JEQ, AF_UNIX);
        allowIfArgument(program, SYS_socketpair, BPF_JEQ, AF_UNIX);
    }
    allowIfArgument(program, SYS_clone, BPF_JSET, CLONE_THREAD);
    allowIfArgument(program, SYS_tgkill, BPF_JEQ, static_cast<std::uint32_t>(::getpid()));
    allowIfArgument(program, SYS_prlimit64, BPF_JEQ, 0); // only the process's own limits
    answer(program, SECCOMP_RET_ALLOW);
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

} // namespace platform

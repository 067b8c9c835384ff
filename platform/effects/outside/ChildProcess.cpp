// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/outside/ChildProcess.hpp"

#include "platform/effects/outside/Chatter.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/startHelper.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <string_view>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace platform::lv2 {
namespace {

std::string textOfError(int error) {
    const char* reason = ::strerrordesc_np(error);
    return reason != nullptr ? reason : "unknown error";
}

} // namespace

Result<std::unique_ptr<ChildProcess>> ChildProcess::start(const std::string& name,
                                                          std::vector<std::string> words,
                                                          std::initializer_list<int> descriptors) {
    const auto failure = [&name](const std::string& reason) {
        return Error("LV2", 5,
                     "The effect \"" + name + "\" cannot be started in a process of its own: " + reason +
                         ".");
    };
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return failure(textOfError(errno));
    Descriptor output(ends[0]);
    const Descriptor theirs(ends[1]);
    std::vector<Inherited> inherited{{theirs.get(), STDOUT_FILENO}, {theirs.get(), STDERR_FILENO}};
    int number = STDERR_FILENO;
    for (const int descriptor : descriptors) inherited.push_back({descriptor, ++number});
    const auto started = startHelper(product::EffectProgram, std::move(words), inherited);
    if (!started) return failure(started.error().localizedDescription());
    std::unique_ptr<ChildProcess> child(new ChildProcess);
    child->_process = started.value();
    child->_descriptor = Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, child->_process, 0)));
    if (!child->_descriptor) return failure(textOfError(errno));
    child->_output = std::move(output);
    child->_reader = std::thread(passOnChatter, child->_output.get(), child->_descriptor.get(), name);
    return child;
}

ChildProcess::~ChildProcess() {
    kill();
    (void)reasonOfEnd();
    if (_reader.joinable()) _reader.join();
}

void ChildProcess::kill() noexcept {
    if (_descriptor) ::syscall(SYS_pidfd_send_signal, _descriptor.get(), SIGKILL, nullptr, 0);
}

std::uint64_t ChildProcess::proportionalBytes() const {
    std::ifstream rollup("/proc/" + std::to_string(_process) + "/smaps_rollup");
    std::string line;
    while (std::getline(rollup, line)) {
        constexpr std::string_view Name = "Pss:";
        if (line.starts_with(Name)) return std::strtoull(line.c_str() + Name.size(), nullptr, 10) * 1024;
    }
    return 0;
}

std::string ChildProcess::reasonOfEnd() {
    if (_process == 0) return _reasonOfEnd;
    int status = 0;
    while (::waitpid(_process, &status, 0) < 0 && errno == EINTR) {
    }
    _process = 0;
    if (WIFSIGNALED(status)) {
        const char* name = ::sigdescr_np(WTERMSIG(status));
        _reasonOfEnd = name != nullptr ? name : "signal " + std::to_string(WTERMSIG(status));
    } else {
        _reasonOfEnd = "exit status " + std::to_string(WEXITSTATUS(status));
    }
    return _reasonOfEnd;
}

} // namespace platform::lv2

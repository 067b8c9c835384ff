// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/images/imageProcess.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

// The process has two seconds of processor time. The thread that paints waits no longer than that by the
// clock; others leave it time on a busy machine.
Clock::time_point deadline() {
    const bool isMainThread = ::gettid() == ::getpid();
    return Clock::now() + std::chrono::seconds(isMainThread ? 2 : 10);
}

class PictureProcess {
  public:
    /// Starts the process with `input` and `output` as its standard descriptors and no others except standard
    /// error. Failure is reported on standard error.
    PictureProcess(const char* format, std::int64_t mostPixels, int input, int output) {
        const std::string program = Bundle::main().privateFrameworksPath() + "/" + product::PictureProgram;
        std::array<std::string, 3> words = {program, format, std::to_string(mostPixels)};
        std::array<char*, 4> arguments{};
        for (std::size_t i = 0; i < words.size(); ++i) arguments[i] = words[i].data();
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        const int error =
            ::posix_spawn(&_process, program.c_str(), &files, &attributes, arguments.data(), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
        if (error == 0) return;
        _process = 0;
        const char* reason = ::strerrordesc_np(error);
        warn("A picture cannot be decoded: " + program + " does not start (" +
             (reason != nullptr ? reason : "unknown error") + ").");
    }
    ~PictureProcess() { (void)end(); }
    PictureProcess(const PictureProcess&) = delete;
    PictureProcess& operator=(const PictureProcess&) = delete;

    [[nodiscard]] bool isRunning() const { return _process != 0; }

    /// Ends the process, whatever it is doing, and returns its status as waitpid gives it.
    int end() {
        int status = 0;
        if (_process == 0) return status;
        ::kill(_process, SIGKILL); // also one that closed its input and continues
        while (::waitpid(_process, &status, 0) < 0 && errno == EINTR) {
        }
        _process = 0;
        return status;
    }

  private:
    pid_t _process = 0;
};

enum class Outcome { Ended, TimedOut };

// Sends `data` and waits until the other side has closed, which happens at the latest when the process ends.
Outcome send(int socket, std::span<const std::byte> data, Clock::time_point deadline) {
    bool isSending = true;
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return Outcome::TimedOut;
        pollfd event{socket, static_cast<short>(isSending ? POLLIN | POLLOUT : POLLIN), 0};
        const int ready = ::poll(&event, 1, static_cast<int>(left));
        if (ready <= 0) continue; // a signal, or the deadline
        // The process sends nothing here; bytes, an error and the end all mean that it has ended.
        if ((event.revents & ~POLLOUT) != 0) return Outcome::Ended;
        const ssize_t count = ::send(socket, data.data(), data.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EAGAIN && errno != EINTR) return Outcome::Ended;
        data = data.subspan(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (!data.empty()) continue;
        ::shutdown(socket, SHUT_WR);
        isSending = false;
    }
}

bool isPossible(const PictureHeader& header, std::int64_t fileSize, std::int64_t mostPixels) {
    constexpr std::int64_t MostPadding = 64; // bytes at the end of a row
    if (header.state != PictureHeader::Complete || header.width <= 0 || header.height <= 0) return false;
    if (header.width > mostPixels || header.height > mostPixels / header.width) return false;
    if (header.channels != 3 && header.channels != 4) return false;
    const std::int64_t rowBytes = header.width * header.channels;
    if (header.stride < rowBytes || header.stride > rowBytes + MostPadding) return false;
    return header.stride * (header.height - 1) + rowBytes <=
           fileSize - static_cast<std::int64_t>(PicturePixelsAt);
}

// Maps the file as the picture's memory. The process has ended; the seals guarantee that nobody else changes
// it.
GObjectRef<GdkPixbuf> takePixels(int file, std::int64_t mostPixels) {
    struct stat status {};
    if (::fcntl(file, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) != 0 ||
        ::fstat(file, &status) != 0 || status.st_size <= static_cast<off_t>(PicturePixelsAt)) {
        return {};
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    void* memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    if (memory == MAP_FAILED) return {};
    struct Mapping {
        void* memory;
        std::size_t size;
    };
    GBytes* bytes = g_bytes_new_with_free_func(
        static_cast<const std::byte*>(memory) + PicturePixelsAt, size - PicturePixelsAt,
        [](gpointer data) {
            const std::unique_ptr<Mapping> mapping(static_cast<Mapping*>(data));
            ::munmap(mapping->memory, mapping->size);
        },
        new Mapping{memory, size});
    PictureHeader header{};
    std::memcpy(&header, memory, sizeof header);
    GdkPixbuf* pixels =
        isPossible(header, status.st_size, mostPixels)
            ? gdk_pixbuf_new_from_bytes(bytes, GDK_COLORSPACE_RGB, header.channels == 4, 8,
                                        static_cast<int>(header.width), static_cast<int>(header.height),
                                        static_cast<int>(header.stride))
            : nullptr;
    g_bytes_unref(bytes);
    return GObjectRef<GdkPixbuf>::adopt(pixels);
}

} // namespace

GObjectRef<GdkPixbuf> decodeInProcess(const char* format, std::span<const std::byte> data,
                                      std::int64_t mostPixels) {
    const auto end = deadline();
    const Descriptor file(::memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    std::array<int, 2> ends{-1, -1};
    if (!file || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
    const Descriptor ours(ends[0]);
    Descriptor theirs(ends[1]);
    PictureProcess process(format, mostPixels, theirs.get(), file.get());
    theirs.close();
    if (!process.isRunning()) return {};
    const Outcome outcome = send(ours.get(), data, end);
    const int status = process.end();
    if (outcome == Outcome::TimedOut || (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)) {
        warn("A picture takes too long to decode and is not shown.");
        return {};
    }
    return takePixels(file.get(), mostPixels);
}

} // namespace platform

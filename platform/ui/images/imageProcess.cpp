// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/images/imageProcess.hpp"

#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/startHelper.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

// The process may use two seconds of processor time. The main thread waits two seconds for it, so that the
// window does not freeze; other threads wait longer, because the machine may be busy.
Clock::time_point deadline() {
    const bool isMainThread = ::gettid() == ::getpid();
    return Clock::now() + std::chrono::seconds(isMainThread ? 2 : 10);
}

class PictureProcess {
  public:
    /// Starts the process with `input` and `output` as its standard input and output. It inherits no other
    /// descriptor except standard error. Failure is reported on standard error.
    PictureProcess(const char* format, std::int64_t mostPixels, int input, int output) {
        auto started = startHelper(product::PictureProgram, {format, std::to_string(mostPixels)},
                                   {{input, STDIN_FILENO}, {output, STDOUT_FILENO}});
        if (started) {
            _process = started.value();
        } else {
            warn("A picture cannot be decoded: " + started.error().localizedDescription() + ".");
        }
    }
    ~PictureProcess() { (void)end(); }
    PictureProcess(const PictureProcess&) = delete;
    PictureProcess& operator=(const PictureProcess&) = delete;

    [[nodiscard]] bool isRunning() const { return _process != 0; }

    /// Kills the process and returns its status as waitpid reports it.
    int end() {
        int status = 0;
        if (_process == 0) return status;
        ::kill(_process, SIGKILL); // it may have closed its input and still run
        while (::waitpid(_process, &status, 0) < 0 && errno == EINTR) {
        }
        _process = 0;
        return status;
    }

  private:
    pid_t _process = 0;
};

enum class Outcome { Ended, TimedOut };

// Sends `data` and waits until the process has closed its end of the socket, at the latest by exiting.
Outcome send(int socket, std::span<const std::byte> data, Clock::time_point deadline) {
    bool isSending = true;
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return Outcome::TimedOut;
        pollfd event{socket, static_cast<short>(isSending ? POLLIN | POLLOUT : POLLIN), 0};
        const int ready = ::poll(&event, 1, static_cast<int>(left));
        if (ready <= 0) continue; // interrupted by a signal, or the deadline has passed
        // The process sends nothing on this socket, so any event except POLLOUT means that it has ended.
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

// Maps the file that contains the pixels. The process has ended, and the seals prevent any change of the
// file.
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

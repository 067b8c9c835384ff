// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/console.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <string>
#include <sys/uio.h>
#include <unistd.h>

namespace platform {
namespace {

// These two variables are set before any other thread runs.
int outputDescriptor = STDOUT_FILENO;
bool printsToStandardError = false;

std::atomic<int> lastError{0};

std::mutex& lineMutex() {
    static auto* mutex = new std::mutex; // never destroyed: lines may be written while statics are destroyed
    return *mutex;
}

// Writes `line` and a newline completely and returns 0, or returns the error number.
int writeLine(int descriptor, std::string_view line) {
    // A short line and its newline are copied into one buffer, because write is faster than writev.
    char whole[1024];
    const char newline = '\n';
    const bool isShort = line.size() < sizeof whole;
    if (isShort) {
        std::copy(line.begin(), line.end(), whole);
        whole[line.size()] = newline;
    }
    std::size_t done = 0;
    const std::size_t total = line.size() + 1;
    const std::scoped_lock lock(lineMutex());
    while (done < total) {
        iovec pieces[2];
        int count = 0;
        if (done < line.size()) pieces[count++] = {const_cast<char*>(line.data()) + done, line.size() - done};
        pieces[count++] = {const_cast<char*>(&newline), 1};
        const ssize_t written =
            isShort ? ::write(descriptor, whole + done, total - done) : ::writev(descriptor, pieces, count);
        if (written >= 0) {
            done += static_cast<std::size_t>(written);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            pollfd ready{descriptor, POLLOUT, 0};
            ::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace

void print(std::string_view line) {
    // An error does not end the program. `printError` returns it.
    if (printsToStandardError) return warn(line);
    if (const int error = writeLine(outputDescriptor, line); error != 0) lastError = error;
}

int printError() noexcept {
    return lastError;
}

void printToStandardError(bool instead) {
    printsToStandardError = instead;
}

void printToFile(int descriptor) {
    outputDescriptor = descriptor;
}

void warn(std::string_view line) {
    (void)writeLine(STDERR_FILENO, line);
}

void reserveStandardOutput() {
    const bool isClosed = ::fcntl(STDOUT_FILENO, F_GETFD) == -1;
    for (int descriptor = 0; descriptor <= 2; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1) ::open("/dev/null", O_RDWR); // uses the lowest free number
    }
    std::fflush(stdout);
    const int kept = isClosed ? -1 : ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (kept == -1 && !isClosed) return;
    outputDescriptor = kept;
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

} // namespace platform

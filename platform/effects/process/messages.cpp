// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/process/messages.hpp"

#include "platform/foundation/Descriptor.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform::lv2 {
namespace {

using Clock = std::chrono::steady_clock;

Descriptor fileWith(std::string_view text) {
    Descriptor file(::memfd_create("text", MFD_CLOEXEC));
    while (file && !text.empty()) {
        const ssize_t written = ::write(file.get(), text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return {};
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return file;
}

std::optional<std::string> textOf(const Descriptor& file) {
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || status.st_size < 0) return std::nullopt;
    if (static_cast<std::uint64_t>(status.st_size) > Message::LongestText) return std::nullopt;
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t read = 0;
    while (read < text.size()) {
        const ssize_t count =
            ::pread(file.get(), text.data() + read, text.size() - read, static_cast<off_t>(read));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt; // the file was truncated meanwhile
        read += static_cast<std::size_t>(count);
    }
    return text;
}

// Returns owners of all descriptors that came with a packet. The space for one has room for two, because of
// its padding.
std::vector<Descriptor> filesOf(msghdr& packet) {
    std::vector<Descriptor> files;
    for (cmsghdr* head = CMSG_FIRSTHDR(&packet); head != nullptr; head = CMSG_NXTHDR(&packet, head)) {
        if (head->cmsg_level != SOL_SOCKET || head->cmsg_type != SCM_RIGHTS) continue;
        std::size_t offset = 0;
        for (; CMSG_LEN(offset + sizeof(int)) <= head->cmsg_len; offset += sizeof(int)) {
            int number = -1;
            std::memcpy(&number, CMSG_DATA(head) + offset, sizeof number);
            files.emplace_back(number);
        }
    }
    return files;
}

// Waits until the socket is readable. Returns false if `deadline` passes first or waiting fails.
bool waitFor(int socket, std::optional<Clock::time_point> deadline) {
    while (true) {
        int milliseconds = -1;
        if (deadline) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
            if (left <= 0) return false;
            milliseconds = static_cast<int>(left);
        }
        pollfd event{socket, POLLIN, 0};
        const int ready = ::poll(&event, 1, milliseconds);
        if (ready > 0) return true;
        if (ready < 0 && errno != EINTR) return false;
    }
}

} // namespace

bool sendMessage(int socket, const Message& message, std::string_view text) {
    iovec part{const_cast<Message*>(&message), sizeof message};
    msghdr packet{};
    packet.msg_iov = &part;
    packet.msg_iovlen = 1;
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))]{};
    Descriptor file;
    if (!text.empty()) {
        if (text.size() > Message::LongestText || !(file = fileWith(text))) return false;
        packet.msg_control = control;
        packet.msg_controllen = sizeof control;
        cmsghdr* head = CMSG_FIRSTHDR(&packet);
        head->cmsg_level = SOL_SOCKET;
        head->cmsg_type = SCM_RIGHTS;
        head->cmsg_len = CMSG_LEN(sizeof(int));
        const int number = file.get();
        std::memcpy(CMSG_DATA(head), &number, sizeof number);
    }
    ssize_t sent = 0;
    do {
        sent = ::sendmsg(socket, &packet, MSG_NOSIGNAL | MSG_DONTWAIT);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(sizeof message);
}

std::optional<ReceivedMessage> receiveMessage(int socket, std::optional<Clock::time_point> deadline) {
    if (!waitFor(socket, deadline)) return std::nullopt;
    ReceivedMessage received;
    iovec part{&received.message, sizeof received.message};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))]{};
    msghdr packet{};
    packet.msg_iov = &part;
    packet.msg_iovlen = 1;
    packet.msg_control = control;
    packet.msg_controllen = sizeof control;
    ssize_t size = 0;
    do {
        size = ::recvmsg(socket, &packet, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
    } while (size < 0 && errno == EINTR);
    const std::vector<Descriptor> files = size >= 0 ? filesOf(packet) : std::vector<Descriptor>();
    const bool isWhole = size == static_cast<ssize_t>(sizeof received.message) &&
                         (packet.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) == 0 && files.size() <= 1;
    if (!isWhole || received.message.version != Message::Version) return std::nullopt;
    if (!files.empty()) {
        auto text = textOf(files.front());
        if (!text) return std::nullopt;
        received.text = std::move(*text);
    }
    return received;
}

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Receives arbitrary packets, with files, as messages of an effect's process and as packets of its interface.
#include "tests/fuzz/fuzz.hpp"

#include "platform/effects/process/interfacePackets.hpp"
#include "platform/effects/process/messages.hpp"
#include "platform/foundation/Descriptor.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

using namespace platform;
using namespace platform::lv2;

namespace {

struct Connection {
    Connection() {
        std::array<int, 2> ends{};
        require(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) == 0);
        host = Descriptor(ends[0]);
        process = Descriptor(ends[1]);
    }
    Descriptor host, process;
};

// Takes up to `most` bytes from the input.
std::string_view take(std::string_view& input, std::size_t most) {
    const std::string_view taken = input.substr(0, most);
    input.remove_prefix(taken.size());
    return taken;
}

unsigned takeByte(std::string_view& input) {
    const std::string_view taken = take(input, 1);
    return taken.empty() ? 0 : static_cast<unsigned char>(taken[0]);
}

// Sends a packet that contains `bytes` and `count` descriptors of a file.
void send(int socket, std::string_view bytes, int file, std::size_t count) {
    iovec part{const_cast<char*>(bytes.data()), bytes.size()};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(4 * sizeof(int))> control{};
    msghdr packet{};
    packet.msg_iov = &part;
    packet.msg_iovlen = 1;
    if (count > 0) {
        const std::vector<int> files(count, file);
        packet.msg_control = control.data();
        packet.msg_controllen = CMSG_SPACE(count * sizeof(int));
        cmsghdr* head = CMSG_FIRSTHDR(&packet);
        head->cmsg_level = SOL_SOCKET;
        head->cmsg_type = SCM_RIGHTS;
        head->cmsg_len = CMSG_LEN(count * sizeof(int));
        std::memcpy(CMSG_DATA(head), files.data(), count * sizeof(int));
    }
    (void)::sendmsg(socket, &packet, MSG_DONTWAIT | MSG_NOSIGNAL);
}

// Returns how many descriptors are open, among the lowest numbers.
int openDescriptors() {
    int count = 0;
    for (int i = 0; i < 64; ++i) count += ::fcntl(i, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

void receive(const Connection& connection, bool isMessage, std::string_view bytes, std::string_view text) {
    const auto now = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    if (isMessage) {
        const auto received = receiveMessage(connection.host.get(), now);
        if (!received) return;
        require(bytes.size() == sizeof(Message) && received->message.version == Message::Version);
        require(received->text.empty() || received->text == text);
        return;
    }
    InterfacePacket packet;
    if (receivePacket(connection.host.get(), packet) != Received::Packet) return;
    const std::string line = packet.line();
    require(line.size() <= packet.text.size());
    require(std::ranges::none_of(line, [](unsigned char letter) { return letter < 0x20 || letter == 0x7f; }));
}

} // namespace

// Each step takes a byte that selects what is sent, then the bytes of the packet and those of its file.
void fuzzOne(std::string_view input) {
    const Connection connection;
    const int before = openDescriptors();
    while (!input.empty()) {
        const unsigned kind = takeByte(input);
        const bool isMessage = (kind & 1U) != 0;
        const std::size_t whole = isMessage ? sizeof(Message) : sizeof(InterfacePacket);
        std::string bytes(take(input, (kind & 2U) != 0 ? takeByte(input) * std::size_t{8} : whole));
        if ((kind & 2U) == 0) bytes.resize(whole);
        if (bytes.empty()) continue; // the receiver takes it for the end, as it should, and would wait
        constexpr std::uint32_t Version = Message::Version;
        if ((kind & 4U) != 0 && bytes.size() >= sizeof Version) {
            std::memcpy(bytes.data(), &Version, sizeof Version);
        }
        const std::string_view text = take(input, takeByte(input));
        const Descriptor file(::memfd_create("text", MFD_CLOEXEC));
        require(::write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()));
        if (kind >= 0xf0) require(::ftruncate(file.get(), off_t{1} << 40U) == 0); // a hole
        send(connection.process.get(), bytes, file.get(), (kind >> 3U) % 5);
        receive(connection, isMessage, bytes, text);
    }
    require(openDescriptors() == before);
}

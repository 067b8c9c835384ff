// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/textOfFile.hpp"

#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/detail/fileErrors.hpp"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

// The byte sequences of RFC 3629, section 4: the range of the first byte, the range of the second byte, which
// excludes surrogates and overlong forms, and the number of bytes after the first.
struct Sequence {
    unsigned char firstLow, firstHigh, secondLow, secondHigh;
    std::size_t following;
};
constexpr std::array<Sequence, 8> Sequences = {{
    {0xC2, 0xDF, 0x80, 0xBF, 1},
    {0xE0, 0xE0, 0xA0, 0xBF, 2},
    {0xE1, 0xEC, 0x80, 0xBF, 2},
    {0xED, 0xED, 0x80, 0x9F, 2},
    {0xEE, 0xEF, 0x80, 0xBF, 2},
    {0xF0, 0xF0, 0x90, 0xBF, 3},
    {0xF1, 0xF3, 0x80, 0xBF, 3},
    {0xF4, 0xF4, 0x80, 0x8F, 3},
}};

constexpr bool isWithin(char c, unsigned char low, unsigned char high) {
    return static_cast<unsigned char>(c) >= low && static_cast<unsigned char>(c) <= high;
}

// Returns the length in bytes of the character at the start of `text`, or 0 if the bytes there are not valid
// UTF-8.
std::size_t characterLength(std::string_view text) {
    if (isWithin(text[0], 0x00, 0x7F)) return 1;
    for (const Sequence& each : Sequences) {
        if (!isWithin(text[0], each.firstLow, each.firstHigh)) continue;
        if (text.size() <= each.following || !isWithin(text[1], each.secondLow, each.secondHigh)) return 0;
        for (std::size_t i = 2; i <= each.following; ++i) {
            if (!isWithin(text[i], 0x80, 0xBF)) return 0;
        }
        return each.following + 1;
    }
    return 0;
}

bool isUTF8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

} // namespace

Result<std::string> stringWithContentsOfFile(const std::string& path) {
    const auto failed = [&](int error) { return detail::itemError(error, path, "opened"); };
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) return failed(errno);
    if (!S_ISREG(status.st_mode)) return failed(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    std::string text;
    std::array<char, 65536> buffer;
    while (true) {
        const ssize_t length = ::read(file.get(), buffer.data(), buffer.size());
        if (length < 0 && errno == EINTR) continue;
        if (length < 0) return failed(errno);
        if (length == 0) break;
        text.append(buffer.data(), static_cast<std::size_t>(length));
    }
    if (!isUTF8(text)) {
        return posixError(EILSEQ, "The file " + detail::quotedName(path) +
                                      " couldn't be opened (It is not UTF-8 text).");
    }
    return text;
}

} // namespace platform

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/URL.hpp"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

namespace platform {
namespace {

constexpr std::string_view HexDigits = "0123456789ABCDEF";

constexpr bool isAlpha(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
constexpr bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr int hexValue(char c) noexcept {
    if (isDigit(c)) return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}
bool staysInPath(char c) noexcept {
    return isAlpha(c) || isDigit(c) ||
           std::string_view("/!$&'()*+,-.:=@_~").find(c) != std::string_view::npos;
}

// Allows the characters of RFC 3986 (unreserved, gen-delims and sub-delims), and % before two hexadecimal
// digits.
bool isURLText(std::string_view text) {
    if (text.empty()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '%') {
            if (i + 2 >= text.size() || hexValue(text[i + 1]) < 0 || hexValue(text[i + 2]) < 0) return false;
            i += 2;
        } else if (!isAlpha(c) && !isDigit(c) &&
                   std::string_view("-._~:/?#[]@!$&'()*+,;=").find(c) == std::string_view::npos) {
            return false;
        }
    }
    return true;
}

// Returns the length of the scheme before the ":", or 0 for a relative reference.
std::size_t schemeLength(std::string_view text) {
    if (text.empty() || !isAlpha(text[0])) return 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == ':') return i;
        if (!isAlpha(text[i]) && !isDigit(text[i]) && text[i] != '+' && text[i] != '-' && text[i] != '.') {
            return 0;
        }
    }
    return 0;
}

std::string absolutePath(std::string_view path) {
    if (!path.empty() && path.front() == '/') return std::string(path);
    std::error_code ignored;
    std::string base = std::filesystem::current_path(ignored).string();
    if (base.empty() || base.back() != '/') base += '/';
    return base + std::string(path);
}

} // namespace

std::string percentEncodedPath(std::string_view path) {
    std::string encoded;
    encoded.reserve(path.size() + path.size() / 8);
    for (const char c : path) {
        if (staysInPath(c)) {
            encoded += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            encoded += '%';
            encoded += HexDigits[byte >> 4U];
            encoded += HexDigits[byte & 15U];
        }
    }
    return encoded;
}

std::string percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
            hexValue(text[i + 2]) >= 0) {
            decoded += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

std::optional<URL> URL::fromString(std::string_view text) {
    if (!isURLText(text)) return std::nullopt;
    return URL(std::string(text));
}

URL URL::fileURLWithPath(std::string_view path) {
    const std::string absolute = absolutePath(path);
    struct stat status {};
    return fileURLWithPath(absolute, ::stat(absolute.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
}

URL URL::fileURLWithPath(std::string_view path, bool isDirectory) {
    std::string text = "file://" + percentEncodedPath(absolutePath(path));
    if (isDirectory && text.back() != '/') text += '/';
    return URL(std::move(text));
}

std::string_view URL::encodedPath() const {
    std::string_view rest = _text;
    rest = rest.substr(0, std::min(rest.find('#'), rest.size()));
    rest = rest.substr(0, std::min(rest.find('?'), rest.size()));
    if (const std::size_t length = schemeLength(rest)) rest.remove_prefix(length + 1);
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        rest.remove_prefix(std::min(rest.find('/'), rest.size()));
    }
    return rest;
}

std::string URL::path() const {
    std::string_view encoded = encodedPath();
    while (encoded.size() > 1 && encoded.back() == '/') encoded.remove_suffix(1);
    return percentDecoded(encoded);
}

std::string URL::scheme() const {
    std::string scheme = _text.substr(0, schemeLength(_text));
    for (char& c : scheme) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return scheme;
}

bool URL::isFileURL() const {
    return scheme() == "file";
}

std::string URL::lastPathComponent() const {
    std::string_view encoded = encodedPath();
    while (encoded.size() > 1 && encoded.back() == '/') encoded.remove_suffix(1);
    if (encoded == "/") return "/";
    return percentDecoded(encoded.substr(encoded.rfind('/') + 1));
}

std::string URL::pathExtension() const {
    const std::string name = lastPathComponent();
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return {};
    return name.substr(dot + 1);
}

URL URL::appendingPathComponent(std::string_view component, bool isDirectory) const {
    const std::size_t end = std::min({_text.find('?'), _text.find('#'), _text.size()});
    std::string text = _text.substr(0, end);
    if (text.empty() || text.back() != '/') text += '/';
    while (!component.empty() && component.front() == '/') component.remove_prefix(1);
    text += percentEncodedPath(component);
    if (isDirectory && text.back() != '/') text += '/';
    return URL(text + _text.substr(end));
}

} // namespace platform

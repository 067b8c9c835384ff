// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Locations as values. File locations are bytes: they pass unchanged, valid UTF-8 or not. Source of the
// grammar: RFC 3986.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

class URL {
  public:
    /// Creates a URL from text; absent if RFC 3986 does not allow the text (empty, blanks, controls, a bare
    /// %).
    [[nodiscard]] static std::optional<URL> fromString(std::string_view text);
    /// Creates a file URL; a relative path starts at the current directory. If the path ends in "/" or names
    /// an existing directory, the URL ends in "/".
    [[nodiscard]] static URL fileURLWithPath(std::string_view path);
    /// Creates a file URL without asking the disk whether it is a directory.
    [[nodiscard]] static URL fileURLWithPath(std::string_view path, bool isDirectory);

    /// Returns the text, percent-encoded.
    [[nodiscard]] const std::string& absoluteString() const noexcept { return _text; }
    /// Returns the path, percent-decoded, without a trailing "/" (the root keeps its own).
    [[nodiscard]] std::string path() const;
    /// Returns the scheme in lower case; empty for relative text.
    [[nodiscard]] std::string scheme() const;
    [[nodiscard]] bool isFileURL() const;
    /// Returns the last component of the path, decoded; "/" for the root.
    [[nodiscard]] std::string lastPathComponent() const;
    /// Returns what follows the last "." of the last component; empty for a leading-dot name or none.
    [[nodiscard]] std::string pathExtension() const;
    /// Appends a "/" and `component`.
    [[nodiscard]] URL appendingPathComponent(std::string_view component, bool isDirectory = false) const;

    friend bool operator==(const URL&, const URL&) = default;

  private:
    explicit URL(std::string text)
        : _text(std::move(text)) {}
    [[nodiscard]] std::string_view encodedPath() const;
    std::string _text;
};

/// Percent-encodes every byte except `A-Z a-z 0-9 / ! $ & ' ( ) * + , - . : = @ _ ~`.
[[nodiscard]] std::string percentEncodedPath(std::string_view path);
/// Replaces each well-formed %XX by its byte.
[[nodiscard]] std::string percentDecoded(std::string_view text);

} // namespace platform

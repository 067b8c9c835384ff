// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A URL (RFC 3986). The path of a file URL can be any bytes, even invalid UTF-8, and is preserved. Any
// thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

class URL {
  public:
    /// Creates a URL from text. Returns no value if the text is empty or has characters that RFC 3986 does
    /// not allow (blanks, control characters, a % without two hexadecimal digits).
    [[nodiscard]] static std::optional<URL> fromString(std::string_view text);
    /// Creates a file URL. A relative path starts at the current directory. The URL ends in "/" if the path
    /// does or names an existing directory.
    [[nodiscard]] static URL fileURLWithPath(std::string_view path);
    /// Creates a file URL, which ends in "/" if `isDirectory` is true. Does not access the file system to
    /// check.
    [[nodiscard]] static URL fileURLWithPath(std::string_view path, bool isDirectory);

    /// Returns the percent-encoded text.
    [[nodiscard]] const std::string& absoluteString() const noexcept { return _text; }
    /// Returns the percent-decoded path without a trailing "/"; the root is "/".
    [[nodiscard]] std::string path() const;
    /// Returns the scheme in lower case, or an empty string for a relative reference.
    [[nodiscard]] std::string scheme() const;
    [[nodiscard]] bool isFileURL() const;
    /// Returns the percent-decoded last component of the path, or "/" for the root.
    [[nodiscard]] std::string lastPathComponent() const;
    /// Returns the text after the last "." of the last component. Returns an empty string if there is no "."
    /// or only a leading one.
    [[nodiscard]] std::string pathExtension() const;
    /// Returns this URL with `component` appended to its path.
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
/// Replaces each well-formed %XX by the byte that it encodes.
[[nodiscard]] std::string percentDecoded(std::string_view text);

} // namespace platform

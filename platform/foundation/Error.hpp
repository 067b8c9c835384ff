// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The error of a failed platform operation. Errors are returned, never thrown.
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// A failure: a domain, a code within the domain, and a sentence for people.
class Error {
  public:
    /// Creates an error. Control bytes in the sentence, for example from a file name, are escaped as \n or
    /// \x01.
    Error(std::string domain, long code, std::string_view localizedDescription);

    [[nodiscard]] const std::string& domain() const noexcept { return _domain; }
    [[nodiscard]] long code() const noexcept { return _code; }
    /// Returns the sentence for people ("The file ... couldn't be removed."), in one line.
    [[nodiscard]] const std::string& localizedDescription() const noexcept { return _localizedDescription; }
    /// Returns the domain, the code and the sentence in one line, for logs.
    [[nodiscard]] std::string description() const;

  private:
    std::string _domain;
    long _code;
    std::string _localizedDescription;
};

/// Creates an error of the domain "POSIX" from an errno value and a sentence for people.
[[nodiscard]] Error posixError(int errorNumber, std::string_view sentence);

} // namespace platform

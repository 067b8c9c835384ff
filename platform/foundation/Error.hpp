// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The error of a failed platform operation: a value, never thrown.
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// A failure with a domain, a code in it, and a sentence for people.
class Error {
  public:
    /// Creates an error; control bytes in the sentence, which may come from a file's name, become \n or \x01.
    Error(std::string domain, long code, std::string_view localizedDescription);

    [[nodiscard]] const std::string& domain() const noexcept { return _domain; }
    [[nodiscard]] long code() const noexcept { return _code; }
    /// Returns the sentence for people ("The file ... couldn't be removed."), one line.
    [[nodiscard]] const std::string& localizedDescription() const noexcept { return _localizedDescription; }
    /// Returns the technical one-liner that contains the sentence.
    [[nodiscard]] std::string description() const;

  private:
    std::string _domain;
    long _code;
    std::string _localizedDescription;
};

/// Creates an error of the domain "POSIX" from an errno value; `sentence` is for people.
[[nodiscard]] Error posixError(int errorNumber, std::string_view sentence);

} // namespace platform

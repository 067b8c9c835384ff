// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the code under test writes to standard output, line by line.
#pragma once

#include <string>
#include <vector>

namespace tonewright::test {

/// From construction to destruction standard output goes to a file of its own.
class CapturedOutput {
  public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// Returns the lines written since construction or the last call of `take`.
    [[nodiscard]] std::vector<std::string> take();
    /// Returns the same lines and leaves them to be taken.
    [[nodiscard]] std::vector<std::string> lines() const;

  private:
    int _kept = -1; // the descriptor that stood at 1
    int _file = -1;
    long _taken = 0; // bytes
};

} // namespace tonewright::test

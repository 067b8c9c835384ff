// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One run of the program that contains effects: starts it and ends it.
#pragma once

#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/Result.hpp"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace platform::lv2 {

class ChildProcess {
  public:
    /// Starts the program with these words after its name. It gets the descriptors as 3, 4 and so on, and
    /// nothing to read. Some of the lines that it writes to its standard output and standard error are passed
    /// on to standard error (see ChatterFilter). `name` names the effect there and in the reason for a
    /// failure.
    [[nodiscard]] static Result<std::unique_ptr<ChildProcess>>
    start(const std::string& name, std::vector<std::string> words, std::initializer_list<int> descriptors);
    /// Ends the process, whatever it is doing.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Ends the process without waiting for that. Any thread.
    void kill() noexcept;
    /// Returns the descriptor that becomes readable when the process ends.
    [[nodiscard]] int descriptor() const noexcept { return _descriptor.get(); }
    /// Returns the process's proportional share of the memory that it uses, in bytes, or 0 if that is not
    /// known. Takes about a millisecond. Must not be called after `reasonOfEnd`.
    [[nodiscard]] std::uint64_t proportionalBytes() const;
    /// Returns why the process ended, for a person: "Segmentation fault". Waits for its end.
    [[nodiscard]] std::string reasonOfEnd();

  private:
    ChildProcess() = default;

    Descriptor _descriptor;
    pid_t _process = 0;       // 0: waited for
    Descriptor _output;       // read by _reader
    std::thread _reader;      // passes on what the process writes, until it ends
    std::string _reasonOfEnd; // set when it was waited for
};

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Records the operations on the audio graph in order, and performs them. `recordedGraph.cpp` replaces the two
// files of the platform that forward these operations.
#pragma once

#include "tests/support/testing.hpp"

namespace tonewright::test {

/// Records the operations of the thread that created the record, as long as it lives. One record at a time.
class GraphRecord : Uncopied {
  public:
    GraphRecord() { _current = this; }
    ~GraphRecord() { _current = nullptr; }

    void add(const std::string& operation) { _operations += (_operations.empty() ? "" : "; ") + operation; }
    /// Adds an operation to the record of this thread, if there is one.
    static void note(const std::string& operation) {
        if (_current != nullptr) _current->add(operation);
    }
    /// Returns the operations since the last call, separated by "; ".
    [[nodiscard]] std::string text() { return std::exchange(_operations, {}); }

  private:
    inline static thread_local GraphRecord* _current = nullptr;
    std::string _operations;
};

} // namespace tonewright::test

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes down the operations on the audio graph, in their order, and has them done. `recordedGraph.cpp` takes
// the place of the two files of the platform that hand these operations on.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tonewright::test {

/// Records what the thread that made it does, for as long as it lives; one at a time.
class GraphRecord {
  public:
    GraphRecord() { _current = this; }
    ~GraphRecord() { _current = nullptr; }
    GraphRecord(const GraphRecord&) = delete;
    GraphRecord& operator=(const GraphRecord&) = delete;

    void add(std::string operation) { _operations.push_back(std::move(operation)); }
    /// Adds an operation to the record of this thread, if there is one.
    static void note(std::string operation) {
        if (_current != nullptr) _current->add(std::move(operation));
    }
    /// Returns the operations since the last call.
    [[nodiscard]] std::vector<std::string> take() { return std::exchange(_operations, {}); }

  private:
    inline static thread_local GraphRecord* _current = nullptr;
    std::vector<std::string> _operations;
};

} // namespace tonewright::test

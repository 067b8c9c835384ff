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
    GraphRecord();
    ~GraphRecord();
    GraphRecord(const GraphRecord&) = delete;
    GraphRecord& operator=(const GraphRecord&) = delete;

    void add(std::string operation) { _operations.push_back(std::move(operation)); }
    /// Returns the operations since the last call.
    [[nodiscard]] std::vector<std::string> take() { return std::exchange(_operations, {}); }

  private:
    std::vector<std::string> _operations;
};

} // namespace tonewright::test

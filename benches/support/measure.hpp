// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by the benchmarks of small operations: a clock, medians, and the JSON object of the last line.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// Returns the nanoseconds that `work` takes.
template <class Work>
[[nodiscard]] double nanoseconds(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count();
}

[[nodiscard]] inline double median(std::vector<double> values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Keeps `value` from being optimised away.
template <class T>
void keep(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

/// Collects the figures and ratios of a benchmark in the order in which they are added.
class Report {
  public:
    void figure(const std::string& name, double value) { _figures.emplace_back(name, value); }
    void ratio(const std::string& name, double value) { _ratios.emplace_back(name, value); }
    /// Writes {"bench": ..., "figures": {...}, "ratios": {...}} as one line.
    void write(const char* bench) const {
        std::printf("{\"bench\": \"%s\", \"figures\": {", bench);
        writeAll(_figures);
        std::printf("}, \"ratios\": {");
        writeAll(_ratios);
        std::printf("}}\n");
    }

  private:
    using Values = std::vector<std::pair<std::string, double>>;
    static void writeAll(const Values& values) {
        const char* separator = "";
        for (const auto& [name, value] : values) {
            std::printf("%s\"%s\": %.6g", separator, name.c_str(), value);
            separator = ", ";
        }
    }
    Values _figures;
    Values _ratios;
};

} // namespace bench

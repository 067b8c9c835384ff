// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/Audio Engine/componentReport.hpp"

#include "platform/foundation/ProcessInfo.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Extensions/stringValue.hpp"

#include <array>
#include <cstdio>

namespace tonewright {
namespace {

// The flag # writes no "0x" before the value 0, so 0 becomes ten zeros.
std::string hexadecimal(std::uint32_t value) {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%#010x", value);
    return buffer.data();
}

} // namespace

void printComponentReport(const platform::AudioComponentDescription& description) {
    const auto& process = platform::ProcessInfo::processInfo();
    platform::print("\nProcess Name: " + process.processName() +
                    " PID: " + std::to_string(process.processIdentifier()) + "\n");
    platform::print("AUExtension (\ntype: " + stringValue(description.componentType) +
                    "\nsubtype: " + stringValue(description.componentSubType) +
                    "\nmanufacturer: " + stringValue(description.componentManufacturer) +
                    "\nflags: " + hexadecimal(description.componentFlags) + "\n)");
}

std::string describe(const platform::AudioComponentDescription& description) {
    return "AudioComponentDescription(componentType: " + std::to_string(description.componentType) +
           ", componentSubType: " + std::to_string(description.componentSubType) +
           ", componentManufacturer: " + std::to_string(description.componentManufacturer) +
           ", componentFlags: " + std::to_string(description.componentFlags) +
           ", componentFlagsMask: " + std::to_string(description.componentFlagsMask) + ")";
}

} // namespace tonewright

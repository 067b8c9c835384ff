// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The parameters that a recipe can set by name: for each struct with such parameters, a constant table with
// their names, members and ranges. The tables are defined next to the code that uses them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tonewright::loops {

/// A parameter of `Owner` that a recipe can set.
template <typename Owner>
struct Setting {
    std::string_view name;
    double Owner::*member;
    double least;
    double greatest;
};

/// The reason why a setting was refused; empty if it was accepted.
using SettingFault = std::string;

/// Formats a number as a recipe would write it, with up to three decimals and no trailing zeros.
[[nodiscard]] std::string plainNumber(double value);

/// Sets the member called `name` to `value`, or returns one clause that says why not.
template <typename Owner>
SettingFault assign(Owner& owner, std::span<const Setting<Owner>> settings, std::string_view name,
                    double value) {
    std::string known;
    for (const Setting<Owner>& setting : settings) {
        if (setting.name == name) {
            if (!(value >= setting.least && value <= setting.greatest)) {
                return "'" + std::string(name) + "' must lie between " + plainNumber(setting.least) +
                       " and " + plainNumber(setting.greatest);
            }
            owner.*setting.member = value;
            return {};
        }
        known += (known.empty() ? "" : ", ") + std::string(setting.name);
    }
    return "there is no setting '" + std::string(name) + "' here; the settings are " + known;
}

} // namespace tonewright::loops

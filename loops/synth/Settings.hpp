// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Named numbers of a plain struct, so that a recipe can set them: a table of name, member and range for each
// struct that a recipe refers to. The tables are declared next to the structs and are constants.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tonewright::loops {

/// One number of `Owner` that a recipe may set.
template <typename Owner>
struct Setting {
    std::string_view name;
    double Owner::*member;
    double least;
    double greatest;
};

/// Why a setting was refused; empty when it was taken.
using SettingFault = std::string;

/// Returns a number as a recipe would write it: up to three decimals, no trailing zeros.
[[nodiscard]] std::string plainNumber(double value);

/// Sets the member called `name` to `value`, or returns one clause saying why not.
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
    return "there is no setting '" + std::string(name) + "' here; there are " + known;
}

} // namespace tonewright::loops

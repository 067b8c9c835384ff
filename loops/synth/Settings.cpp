// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Settings.hpp"

#include <cstdio>

namespace tonewright::loops {

std::string plainNumber(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", value);
    std::string plain = text;
    while (plain.back() == '0') {
        plain.pop_back();
    }
    if (plain.back() == '.') {
        plain.pop_back();
    }
    return plain;
}

} // namespace tonewright::loops

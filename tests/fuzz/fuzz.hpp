// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The subject of a fuzz target. Built for libFuzzer (clang), or as a test that passes the kept fixtures
// through.
#pragma once

#include <string_view>

/// Work on one input; abort when something does not hold.
void fuzzOne(std::string_view input);

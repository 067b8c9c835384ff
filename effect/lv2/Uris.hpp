// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The URIs by which hosts, the plug-in and its panel refer to each other.
#pragma once

namespace tonewright::effect {

#define TONEWRIGHT_URI                                                                                       \
    "https://tonewright.example/lv2/tonewright" // a macro, to be concatenated with literals below

inline constexpr char PluginUri[] = TONEWRIGHT_URI;
inline constexpr char PanelUri[] = TONEWRIGHT_URI "#ui";
inline constexpr char DisplayRequestUri[] = TONEWRIGHT_URI "#DisplayRequest";
inline constexpr char DisplayFrameUri[] = TONEWRIGHT_URI "#DisplayFrame";
inline constexpr char LevelsUri[] = TONEWRIGHT_URI "#levels";
inline constexpr char SpectrumUri[] = TONEWRIGHT_URI "#spectrum";
inline constexpr char TuningUri[] = TONEWRIGHT_URI "#tuning";
inline constexpr char ModWheelUri[] = TONEWRIGHT_URI "#modWheel";

#undef TONEWRIGHT_URI

/// The vocabulary in which a bundle states its component codes.
inline constexpr char ComponentVocabulary[] = "https://tonewright.example/ns/component#";

} // namespace tonewright::effect

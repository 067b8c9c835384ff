// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The URIs of the plug-in, its panel, and their messages and state.
#pragma once

namespace tonewright::effect {

#define TONEWRIGHT_URI                                                                                       \
    "https://tonewright.example/lv2/tonewright" // a macro, so that literals can be appended below

inline constexpr char PluginUri[] = TONEWRIGHT_URI;
inline constexpr char PanelUri[] = TONEWRIGHT_URI "#ui";
inline constexpr char DisplayRequestUri[] = TONEWRIGHT_URI "#DisplayRequest";
inline constexpr char DisplayFrameUri[] = TONEWRIGHT_URI "#DisplayFrame";
inline constexpr char LevelsUri[] = TONEWRIGHT_URI "#levels";
inline constexpr char SpectrumUri[] = TONEWRIGHT_URI "#spectrum";
inline constexpr char TuningUri[] = TONEWRIGHT_URI "#tuning";
inline constexpr char ModWheelUri[] = TONEWRIGHT_URI "#modWheel";

#undef TONEWRIGHT_URI

/// The RDF vocabulary with which a bundle states its component codes.
inline constexpr char ComponentVocabulary[] = "https://tonewright.example/ns/component#";

} // namespace tonewright::effect

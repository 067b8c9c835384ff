// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The binary interface of plug-in interfaces that open windows of their own. It is not among the LV2 headers.
#pragma once

#include <lv2/ui/ui.h>

namespace platform::lv2::external {

/// The class of such interfaces, and the feature with a Host.
inline constexpr const char* Class = "http://kxstudio.sf.net/ns/lv2ext/external-ui#Widget";
inline constexpr const char* HostFeature = "http://kxstudio.sf.net/ns/lv2ext/external-ui#Host";
/// An older name of both, which many packaged plug-ins still use.
inline constexpr const char* OldName = LV2_UI_PREFIX "external";

/// What the interface returns as its widget. All functions are called by the thread that created it.
struct Widget {
    void (*run)(Widget*); // to be called regularly
    void (*show)(Widget*);
    void (*hide)(Widget*);
};

/// What the interface gets from the host.
struct Host {
    void (*closed)(LV2UI_Controller); // called when the user has closed the window
    const char* name;                 // for the title of the window
};

} // namespace platform::lv2::external

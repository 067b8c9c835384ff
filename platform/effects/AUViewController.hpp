// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The view controller of an effect's interface. Main thread only.
#pragma once

#include "platform/ui/UIViewController.hpp"

namespace platform {

class AUViewController : public UIViewController {
  public:
    using UIViewController::UIViewController;
};

} // namespace platform

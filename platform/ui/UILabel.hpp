// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A line of text. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <string>

namespace platform {

class UILabel final : public UIView {
  public:
    explicit UILabel(const std::string& text = {});
    explicit UILabel(ImplementationPointer implementation);

    /// Returns the displayed text.
    [[nodiscard]] std::string text() const;
    /// Shows `text`. If the interface description enables mnemonics for the label, an underscore marks the
    /// letter after it as the mnemonic.
    void setText(const std::string& text);
};

} // namespace platform

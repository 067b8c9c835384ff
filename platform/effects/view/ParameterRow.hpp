// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One row of the plain list of an effect's parameters. Main thread only.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"

#include <algorithm>
#include <gtk/gtk.h>
#include <limits>
#include <memory>

namespace platform {

/// The widgets of one parameter, and its value as they show it. Does not move, because the signals of its
/// control refer to it.
struct ParameterRow {
    std::shared_ptr<AUAudioUnit> unit;
    AUParameter parameter;
    GtkWidget* widget = nullptr;  // the control, or the widget that contains it
    GtkWidget* control = nullptr; // a level bar if the parameter is not writable
    GtkWidget* valueLabel = nullptr;
    float shown = std::numeric_limits<float>::quiet_NaN();
    bool isRefreshing =
        false; // while true, the control's signals are ignored, because they do not come from the user

    /// Sets the parameter to a value that the user chose.
    void set(float value);
    /// Shows the present value, if it is another one than before.
    void refresh();
    /// Returns the parameter value at which the level bar is empty. A GtkLevelBar has no values below 0.
    [[nodiscard]] double levelBase() const { return std::min(0.F, parameter.minValue); }

  private:
    [[nodiscard]] guint choiceFor(float value) const;
};

/// Creates the control of `row` for its parameter: a switch, a drop-down, a slider or a level bar.
void makeControl(ParameterRow& row);

} // namespace platform

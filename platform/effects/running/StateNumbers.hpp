// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Saves the floating-point numbers in a plug-in's state without loss. lilv writes a float with eight digits
// after the decimal point, which makes most values imprecise and turns very small values into 0. Therefore
// the numbers are recorded when the plug-in stores them, and lilv's text is rewritten with all their digits.
// Private to platform/effects; control side and the threads of plug-ins.
#pragma once

#include <lilv/lilv.h>
#include <lv2/state/state.h>
#include <mutex>
#include <string>
#include <vector>

namespace platform::lv2 {

/// A floating-point number in a state, as the plug-in stored it.
struct StoredNumber {
    double value = 0;
    bool isDouble = false; // otherwise a float
};

/// Returns the number as text, with enough digits to restore it exactly, and never in the form of an integer,
/// which could not represent -0.
[[nodiscard]] std::string allDigits(const StoredNumber& number);

/// A substitute for an instance. It records every number that the plug-in stores while lilv saves the
/// plug-in's state.
class StateRecorder {
  public:
    /// `mutex` must be locked while lilv uses the substitute. It is unlocked while the plug-in's own code
    /// runs.
    StateRecorder(LilvInstance& instance, std::mutex& mutex);
    StateRecorder(const StateRecorder&) = delete;
    StateRecorder& operator=(const StateRecorder&) = delete;

    /// Returns the substitute instance to pass to `lilv_state_new_from_instance`; valid as long as this
    /// object.
    [[nodiscard]] LilvInstance* instance() noexcept { return &_replacement; }
    /// Returns the numbers in the order in which lilv writes them.
    [[nodiscard]] std::vector<StoredNumber> numbers() const;
    /// Returns how many bytes the plug-in has stored.
    [[nodiscard]] std::size_t bytes() const noexcept { return _bytes; }

  private:
    friend struct StateRecording;
    struct Property {
        LV2_URID key;
        std::vector<StoredNumber> numbers;
    };
    LilvInstance& _instance;
    std::mutex& _mutex;
    const LV2_State_Interface* const _state; // the plug-in's state interface, or null
    LV2_Descriptor _descriptor;
    LilvInstance _replacement;
    std::vector<Property> _properties;
    std::size_t _bytes = 0;
};

/// Returns `text`, as written by lilv, with all digits of `numbers`. Returns `text` unchanged if it contains
/// other numbers.
[[nodiscard]] std::string withAllDigits(const std::string& text, const std::vector<StoredNumber>& numbers);

} // namespace platform::lv2

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The digits of what a plug-in saves by itself. lilv writes a float with eight digits after the point, which
// loses some of most values and all of small ones. So what the plug-in stores is looked at on its way to
// lilv, and the numbers in the text are written anew. Private to platform/effects; control side.
#pragma once

#include <lilv/lilv.h>
#include <string>
#include <vector>

namespace platform::lv2 {

/// A floating-point number of a state, as it was stored.
struct StoredNumber {
    double value = 0;
    bool isDouble = false; // else a float
};

/// Returns the number with as many digits as give it back, and never as a whole number, which has no -0.
[[nodiscard]] std::string allDigits(const StoredNumber& number);

/// Stands in the place of an instance while lilv has it save its state, and notes every number that it
/// stores.
class StateRecorder {
  public:
    explicit StateRecorder(LilvInstance& instance);
    StateRecorder(const StateRecorder&) = delete;
    StateRecorder& operator=(const StateRecorder&) = delete;

    /// Give what `lilv_state_new_from_instance` takes for the instance; valid as long as this object.
    [[nodiscard]] LilvInstance* instance() noexcept { return &_standIn; }
    /// Returns the numbers in the order in which lilv writes them.
    [[nodiscard]] std::vector<StoredNumber> numbers() const;

  private:
    friend struct StateRecording;
    struct Property {
        LV2_URID key;
        std::vector<StoredNumber> numbers;
    };
    LilvInstance& _instance;
    LV2_Descriptor _descriptor;
    LilvInstance _standIn;
    std::vector<Property> _properties;
};

/// Returns `text`, which lilv wrote, with all digits of `numbers`; as it is where these are not the ones in
/// it.
[[nodiscard]] std::string withAllDigits(const std::string& text, const std::vector<StoredNumber>& numbers);

} // namespace platform::lv2

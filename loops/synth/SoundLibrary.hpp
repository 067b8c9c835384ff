// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The instruments and kits that recipes name, read from text; loops/README.md describes the format. A value:
// any number of threads may read it while no thread changes it.
#pragma once

#include "Drum.hpp"
#include "Instrument.hpp"
#include "TextLines.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tonewright::loops {

class SoundLibrary {
  public:
    /// Adds the sounds that `text` defines, or returns the error of its first faulty line.
    [[nodiscard]] std::optional<LineFault> read(std::string_view text);

    /// Returns the named instrument, or no value.
    [[nodiscard]] std::optional<Patch> instrument(std::string_view name) const;

    /// Returns whether there is a kit of this name.
    [[nodiscard]] bool hasKit(std::string_view kit) const;

    /// Returns the named drum of `kit`, or of the first kit if `kit` does not define it, or no value.
    [[nodiscard]] std::optional<Drum> drum(std::string_view kit, std::string_view drum) const;

    /// Returns the names that a recipe can use, separated by commas.
    [[nodiscard]] std::string instrumentNames() const;
    [[nodiscard]] std::string kitNames() const;
    [[nodiscard]] std::string drumNames() const;

  private:
    template <typename Sound>
    using Named = std::vector<std::pair<std::string, Sound>>;

    std::string addInstrument(Words arguments);
    std::string addDrum(std::string_view name, Words arguments);

    Named<Patch> _instruments;
    Named<Named<Drum>> _kits; ///< the first kit has every drum
};

} // namespace tonewright::loops

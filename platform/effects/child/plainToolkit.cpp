// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/child/InterfaceToolkit.hpp"

#include <poll.h>

namespace platform::lv2 {
namespace {

class PlainToolkit final : public InterfaceToolkit {
  public:
    unsigned long embed(void* widget, unsigned long /*parent*/) override {
        return reinterpret_cast<unsigned long>(widget); // the interface has created it in its parent
    }

    void run(int descriptor, const Serve& serve) override {
        while (const auto left = serve()) {
            pollfd event{descriptor, POLLIN, 0};
            ::poll(&event, 1, static_cast<int>(left->count()));
        }
    }
};

} // namespace

std::unique_ptr<InterfaceToolkit> makePlainToolkit() {
    return std::make_unique<PlainToolkit>();
}

} // namespace platform::lv2

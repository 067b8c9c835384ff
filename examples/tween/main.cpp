// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The animation engine alone: a ball on the terminal, without audio, windows or web.
#include "platform/dispatch/RunLoop.hpp"
#include "shared/Common/Animator/AnimatorChain.hpp"

#include <cmath>
#include <cstdio>
#include <string>

using namespace tonewright;

int main() {
    const auto show = [](Animator&, float column) {
        const auto blanks = static_cast<std::size_t>(std::lround(std::fmax(0.0F, column)));
        std::printf("%so\n", std::string(blanks, ' ').c_str());
    };
    bool done = false;
    const auto chain = std::make_shared<AnimatorChain>();
    for (const auto type : {EnumEasing::EASING_easeOutBounce, EnumEasing::EASING_easeInOutBack}) {
        const bool there = type == EnumEasing::EASING_easeOutBounce;
        const auto ball = Animator::create(there ? 0 : 60, there ? 60 : 0, 30, 0.009F, type);
        ball->onAnimation = show;
        ball->onFinished = show;
        chain->add(ball);
    }
    chain->interval = 1 / 60.0F;
    chain->onFinished = [&done](AnimatorChain&) { done = true; };
    chain->start();
    return platform::RunLoop::current().runUntil([&done] { return done; }, 10) ? 0 : 1;
}

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Opens the help screen from the main screen.
#include "app/interface/ViewController.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/UIStoryboardSegue.hpp"
#include "shared/HelpViewController/HelpViewController.hpp"

namespace tonewright {
namespace {

HelpViewController& helpScreenOf(const platform::UIStoryboardSegue& segue) {
    const auto screen = std::dynamic_pointer_cast<HelpViewController>(segue.destinationViewController());
    if (!screen) platform::fatal("ViewController: The segue does not lead to a HelpViewController.");
    return *screen;
}

} // namespace

void ViewController::showHelp(const std::shared_ptr<platform::UIResponder>&) {
    platform::UIApplication::shared().openURL(platform::unwrap(platform::URL::fromString(WebSite)), {},
                                              nullptr);
    performSegueWithIdentifier("showHelp", shared_from_this());
}

void ViewController::prepare(const platform::UIStoryboardSegue& forSegue,
                             const std::shared_ptr<platform::UIResponder>&) {
    const auto& identifier = forSegue.identifier();
    if (!identifier) return;
    platform::print(*identifier);
    if (*identifier == "showInfo") {
        helpScreenOf(forSegue).prepareInfo(*identifier);
    } else if (*identifier == "showHelp") {
        helpScreenOf(forSegue).prepareInfo("showHelp");
    }
}

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program with its real main screen, doing what its standard input says, a
// line each, the arguments percent-encoded:
//   alert TITLE MESSAGE   show the screen's alert       pick          let the screen have a folder chosen
//   open URL              open it outside               pick-many     the same with more than one choice
//   say TEXT              write it as a line
#include "app/AppDelegate.hpp"
#include "app/interface/ViewController.hpp"
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/foundation/console.hpp"
#include "platform/ui/UIApplication.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/classRegistry.hpp"

#include <iostream>
#include <sstream>
#include <thread>

namespace {

using namespace platform;

std::shared_ptr<tonewright::ViewController> mainScreen() {
    const auto delegate =
        std::static_pointer_cast<tonewright::AppDelegate>(UIApplication::shared().delegate());
    return std::static_pointer_cast<tonewright::ViewController>(delegate->window->rootViewController());
}

void perform(const std::string& line) {
    std::istringstream words(line);
    std::string command, first, second;
    words >> command >> first >> second;
    first = percentDecoded(first == "-" ? "" : first);
    second = percentDecoded(second == "-" ? "" : second);
    const auto screen = mainScreen();
    if (command == "alert") screen->alertMessage(first, second);
    if (command == "pick") screen->openFilePicker();
    if (command == "pick-many") {
        const auto picker = std::make_shared<UIDocumentPickerViewController>(
            std::vector<std::string>{"public.folder"}, UIDocumentPickerMode::Open);
        picker->setDelegate(screen);
        picker->setAllowsMultipleSelection(true);
        screen->presentViewController(picker, true, [] { print("shown"); });
    }
    if (command == "open") {
        UIApplication::shared().openURL(*URL::fromString(first), {},
                                        [](bool success) { print(success ? "opened" : "not opened"); });
    }
    if (command == "say") print(first);
}

} // namespace

int main(int argc, char** argv) {
    registerClass<tonewright::AppDelegate>("AppDelegate");
    registerClass<tonewright::ViewController>("ViewController");
    std::thread([] {
        for (std::string line; std::getline(std::cin, line);) {
            DispatchQueue::main().async([line] { perform(line); });
        }
    }).detach();
    return UIApplicationMain(argc, argv, std::nullopt, "AppDelegate");
}

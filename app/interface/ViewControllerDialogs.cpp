// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The main screen's dialogs: a folder picker and an alert, whose results are only printed.
#include "app/interface/ViewController.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/ui/UIAlertController.hpp"

namespace tonewright {

using platform::print;
using platform::UIAlertAction;
using platform::UIAlertActionStyle;

void ViewController::openFilePicker() {
    const auto picker = std::make_shared<platform::UIDocumentPickerViewController>(
        std::vector<std::string>{"public.folder"}, platform::UIDocumentPickerMode::Open);
    picker->setDelegate(std::static_pointer_cast<ViewController>(shared_from_this()));
    picker->setAllowsMultipleSelection(false);
    presentViewController(picker, true, [] {});
}

void ViewController::documentPicker(platform::UIDocumentPickerViewController&,
                                    const platform::URL& didPickDocumentAt) {
    print("documentPicker (didPickDocumentAt): " + didPickDocumentAt.path());
}

void ViewController::documentPicker(platform::UIDocumentPickerViewController&,
                                    const std::vector<platform::URL>& didPickDocumentsAt) {
    std::string list;
    for (const platform::URL& url : didPickDocumentsAt) {
        list += (list.empty() ? "" : ", ") + url.absoluteString();
    }
    print("documentPicker: [" + list + "]");
    if (didPickDocumentsAt.empty()) platform::fatal(platform::UnexpectedNilUnwrapping);
    print("documentPicker (didPickDocumentsAt): " + didPickDocumentsAt.front().path());
}

void ViewController::documentPickerWasCancelled(platform::UIDocumentPickerViewController&) {
    print("The document picker was canceled.");
}

void ViewController::alertMessage(const std::string& title, const std::string& message) {
    print(title + ": " + message);
    const auto alert = platform::UIAlertController::alertControllerWithTitle(
        title, message, platform::UIAlertControllerStyle::Alert);
    const auto confirm = UIAlertAction::actionWithTitle(
        "OK", UIAlertActionStyle::Default, [](const UIAlertAction&) { print("Alert was confirmed."); });
    const auto cancel = UIAlertAction::actionWithTitle(
        "Cancel", UIAlertActionStyle::Cancel, [](const UIAlertAction&) { print("Alert was canceled."); });
    alert->addAction(confirm);
    alert->addAction(cancel);
    presentViewController(alert, true, nullptr);
}

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Lets the user choose files or folders in the desktop's file dialog. Main thread only.
#pragma once

#include "platform/foundation/URL.hpp"
#include "platform/ui/UIViewController.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIDocumentPickerViewController;

/// Receives the user's choice: exactly one call each time a picker is presented.
class UIDocumentPickerDelegate {
  public:
    virtual ~UIDocumentPickerDelegate() = default;
    /// Receives a single choice. Pickers call the overload below instead; this one is for other callers.
    virtual void documentPicker(UIDocumentPickerViewController& controller, const URL& didPickDocumentAt) = 0;
    /// Called with the chosen files or folders: at least one, and exactly one unless the picker allows
    /// multiple selection. They may no longer exist.
    virtual void documentPicker(UIDocumentPickerViewController& controller,
                                const std::vector<URL>& didPickDocumentsAt) = 0;
    /// Called when the user has cancelled the dialog, or closed it without a choice.
    virtual void documentPickerWasCancelled(UIDocumentPickerViewController& controller) = 0;
};

/// Has no effect here: the chosen file always stays where it is.
enum class UIDocumentPickerMode : std::uint64_t {
    Import = 0,
    Open = 1,
    ExportToService = 2,
    MoveToService = 3
};

class UIDocumentPickerViewController final : public UIViewController {
  public:
    /// Creates a picker for folders if `documentTypes` contains "public.folder", otherwise for files.
    UIDocumentPickerViewController(const std::vector<std::string>& documentTypes,
                                   UIDocumentPickerMode inMode);
    ~UIDocumentPickerViewController() override;

    void setDelegate(const std::shared_ptr<UIDocumentPickerDelegate>& delegate) { _delegate = delegate; }
    void setAllowsMultipleSelection(bool allows) noexcept { _allowsMultipleSelection = allows; }
    [[nodiscard]] bool allowsMultipleSelection() const noexcept { return _allowsMultipleSelection; }

  protected:
    /// Shows the dialog and returns at once. The dialog owns a reference to this controller until it is
    /// answered.
    void showOver(UIViewController& presenter, bool animated, std::function<void()> completion) override;

  private:
    struct Chooser;
    void answer(const std::vector<URL>& chosen);

    bool _picksFolders;
    bool _allowsMultipleSelection = false;
    std::weak_ptr<UIDocumentPickerDelegate> _delegate;
    std::unique_ptr<Chooser> _chooser; // null unless the dialog is shown
};

} // namespace platform

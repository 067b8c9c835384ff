// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Choosing files or folders in the desktop's own chooser. Main thread only.
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

/// Receives the result of a choice: exactly one call for each time a picker is presented.
class UIDocumentPickerDelegate {
  public:
    virtual ~UIDocumentPickerDelegate() = default;
    /// Called with one choice. Pickers report a list; this form is for other callers.
    virtual void documentPicker(UIDocumentPickerViewController& controller, const URL& didPickDocumentAt) = 0;
    /// Called with the choices: at least one, and only one unless the picker allows more. What was chosen may
    /// no longer exist.
    virtual void documentPicker(UIDocumentPickerViewController& controller,
                                const std::vector<URL>& didPickDocumentsAt) = 0;
    /// Called when the chooser was cancelled, or closed with nothing chosen.
    virtual void documentPickerWasCancelled(UIDocumentPickerViewController& controller) = 0;
};

/// What happens to the chosen file; here it always stays where it is.
enum class UIDocumentPickerMode : std::uint64_t {
    Import = 0,
    Open = 1,
    ExportToService = 2,
    MoveToService = 3
};

class UIDocumentPickerViewController final : public UIViewController {
  public:
    /// Creates a picker of folders if `documentTypes` contains "public.folder", otherwise of files.
    UIDocumentPickerViewController(const std::vector<std::string>& documentTypes,
                                   UIDocumentPickerMode inMode);
    ~UIDocumentPickerViewController() override;

    void setDelegate(const std::shared_ptr<UIDocumentPickerDelegate>& delegate) { _delegate = delegate; }
    void setAllowsMultipleSelection(bool allows) noexcept { _allowsMultipleSelection = allows; }
    [[nodiscard]] bool allowsMultipleSelection() const noexcept { return _allowsMultipleSelection; }

  protected:
    /// Shows the chooser and returns; the chooser keeps this controller until it is answered.
    void showOver(UIViewController& presenter, bool animated, std::function<void()> completion) override;

  private:
    struct Chooser;
    void answer(const std::vector<URL>& chosen);

    bool _picksFolders;
    bool _allowsMultipleSelection = false;
    std::weak_ptr<UIDocumentPickerDelegate> _delegate;
    std::unique_ptr<Chooser> _chooser; // while it is shown
};

} // namespace platform

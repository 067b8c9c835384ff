// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The main screen: five buttons, and a panel with the effect's interface. It owns the extension manager,
// which owns the engine player. It is the delegate of both, and shows Play or Stop depending on the play
// state.
//
// Main thread. The screen, the manager and the player have strong references to one another, so that all
// three live until the program ends.
#pragma once

#include "app/Audio Engine/AUEnginePlayerDelegate.hpp"
#include "app/Audio Engine/AUExtensionManagerDelegate.hpp"
#include "platform/ui/UIButton.hpp"
#include "platform/ui/UIDocumentPickerViewController.hpp"
#include "platform/ui/UIViewController.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
class AVAudioUnit;
}

namespace tonewright {

class AUExtensionManager;

class ViewController : public platform::UIViewController,
                       public AUExtensionManagerDelegate,
                       public AUEnginePlayerDelegate,
                       public platform::UIDocumentPickerDelegate {
  public:
    explicit ViewController(std::optional<std::string> nibName, const platform::Bundle* bundle = nullptr);
    /// Creates the screen that `coder` describes, or returns null if the coder has no description.
    [[nodiscard]] static std::shared_ptr<ViewController> initWithCoder(const platform::NSCoder& coder);

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;
    void viewDidLayoutSubviews() override;
    [[nodiscard]] bool canPerformAction(std::string_view selector,
                                        const std::shared_ptr<platform::UIResponder>& withSender) override;

    /// Shows or hides the panel with the effect's interface.
    virtual void onButtonUnit(const std::shared_ptr<platform::UIResponder>& sender);
    /// Starts or stops playback. Both buttons call the same function, but only one of them is visible at a
    /// time.
    virtual void onPlayButton(const std::shared_ptr<platform::UIButton>& sender);
    virtual void onStopButton(const std::shared_ptr<platform::UIButton>& sender);

    /// Opens the maker's web site in the browser and the manual in the help screen.
    virtual void showHelp(const std::shared_ptr<platform::UIResponder>& sender);
    /// Tells the help screen what to show. Called before the screen appears.
    void prepare(const platform::UIStoryboardSegue& forSegue,
                 const std::shared_ptr<platform::UIResponder>& sender) override;

    /// Asks the effect for its interface and adds it to the panel when it arrives.
    void onFoundComponent(const std::shared_ptr<platform::AVAudioUnit>& unit) override;
    void onEngineInitialized() override;
    void onPlayerStateChanged(bool playing) override;
    void onFileSelect(const std::string& file) override;
    void onLoop(std::int64_t count) override;

    /// Lets the user choose a folder. The choice is only printed.
    virtual void openFilePicker();
    void documentPicker(platform::UIDocumentPickerViewController& controller,
                        const platform::URL& didPickDocumentAt) override;
    /// Prints the choice. An empty list is a fatal error.
    void documentPicker(platform::UIDocumentPickerViewController& controller,
                        const std::vector<platform::URL>& didPickDocumentsAt) override;
    void documentPickerWasCancelled(platform::UIDocumentPickerViewController& controller) override;
    /// Shows an alert with the buttons OK and Cancel and returns at once. The choice is only printed.
    virtual void alertMessage(const std::string& title, const std::string& message);

    /// Sets the frame of the panel to a centred square that covers the screen.
    virtual void centerPluginView();

  protected:
    explicit ViewController(const platform::NSCoder& coder);
    void offerConnections(platform::InterfaceConnections& connections) override;

  private:
    virtual void getDirectories();
    virtual void embedPlugInView();
    virtual void resetPluginView(double w, double h);
    void embed(const std::shared_ptr<platform::UIViewController>& controller,
               const std::shared_ptr<platform::UIView>& controllerView);
    [[nodiscard]] std::shared_ptr<platform::UIView> audioUnitView() const;

    std::shared_ptr<AUExtensionManager> audioUnitManager;

  public:
    std::shared_ptr<platform::UIView> pluginView;
    std::shared_ptr<platform::UIButton> buttonUnit;
    std::shared_ptr<platform::UIButton> buttonInfo;
    std::shared_ptr<platform::UIButton> buttonHelp;
    std::shared_ptr<platform::UIButton> playButton;
    std::shared_ptr<platform::UIButton> stopButton;

  private:
    std::string documentsPath;
    std::string sharedPath; // always empty
    std::string resourcesPath;
    std::shared_ptr<platform::UIViewController> audioUnitViewController; // always null
    std::shared_ptr<platform::AVAudioUnit> avAudioUnit;                  // always null
};

} // namespace tonewright

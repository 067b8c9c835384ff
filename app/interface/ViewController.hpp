// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The main screen: five buttons and the panel in which the effect shows its own interface. It owns the
// extension manager and through it the engine player, is the delegate of both, and keeps Play and Stop in
// step with the play state.
//
// Main thread. The screen, the manager and the player own one another: all three live as long as the program.
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
    /// Creates the screen that `coder` describes; absent if the coder cannot be used.
    [[nodiscard]] static std::shared_ptr<ViewController> initWithCoder(const platform::NSCoder& coder);

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;
    void viewDidLayoutSubviews() override;
    [[nodiscard]] bool canPerformAction(std::string_view selector,
                                        const std::shared_ptr<platform::UIResponder>& withSender) override;

    /// Shows the panel if it is hidden, else hides it.
    virtual void onButtonUnit(const std::shared_ptr<platform::UIResponder>& sender);
    /// Toggles playback. Play and Stop do the same; they differ only in when they are visible.
    virtual void onPlayButton(const std::shared_ptr<platform::UIButton>& sender);
    virtual void onStopButton(const std::shared_ptr<platform::UIButton>& sender);

    /// Opens the maker's web site in the browser and the manual in the help screen.
    virtual void showHelp(const std::shared_ptr<platform::UIResponder>& sender);
    /// Tells the help screen what to show, before it appears.
    void prepare(const platform::UIStoryboardSegue& forSegue,
                 const std::shared_ptr<platform::UIResponder>& sender) override;

    /// Puts the effect's own interface into the panel as soon as the effect has provided it.
    void onFoundComponent(const std::shared_ptr<platform::AVAudioUnit>& unit) override;
    void onEngineInitialized() override;
    void onPlayerStateChanged(bool playing) override;
    void onFileSelect(const std::string& file) override;
    void onLoop(std::int64_t count) override;

    /// Asks the user for a folder. The choice is written to the log and has no other effect.
    virtual void openFilePicker();
    void documentPicker(platform::UIDocumentPickerViewController& controller,
                        const platform::URL& didPickDocumentAt) override;
    /// Prints the choice; an empty list is fatal.
    void documentPicker(platform::UIDocumentPickerViewController& controller,
                        const std::vector<platform::URL>& didPickDocumentsAt) override;
    void documentPickerWasCancelled(platform::UIDocumentPickerViewController& controller) override;
    /// Shows an alert with the buttons OK and Cancel and returns; the choice is written to the log.
    virtual void alertMessage(const std::string& title, const std::string& message);

    /// Lays the panel out as a square that covers the screen.
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
    std::shared_ptr<platform::UIViewController> audioUnitViewController; // stays absent
    std::shared_ptr<platform::AVAudioUnit> avAudioUnit;                  // stays absent
};

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The gallery's screen: a clock with sixty frames per second for all exhibits, the controls, and a status
// line with the current frame and the time that a tick of the engine takes. Main thread only.
#pragma once

#include "gallery/CurveWall.hpp"
#include "gallery/ImpulseExhibit.hpp"
#include "platform/dispatch/Timer.hpp"
#include "platform/ui/UIButton.hpp"
#include "platform/ui/UILabel.hpp"
#include "platform/ui/UIViewController.hpp"

#include <memory>
#include <vector>

namespace tonewright {

class GalleryController final : public platform::UIViewController {
  public:
    explicit GalleryController(const platform::NSCoder& coder);
    ~GalleryController() override;
    [[nodiscard]] static std::shared_ptr<GalleryController> initWithCoder(const platform::NSCoder& coder);

    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;

  protected:
    void offerConnections(platform::InterfaceConnections& connections) override;

  private:
    using Sender = std::shared_ptr<platform::UIResponder>;
    void onPauseButton(const Sender&);
    void onRestartButton(const Sender&);
    void onSlowerButton(const Sender&);
    void onFasterButton(const Sender&);
    void onFlickButton(const Sender&);

    void changeSpeed(int direction);
    void restart();
    void frame();
    void show();
    void showStatus();

    std::shared_ptr<platform::UIView> curvesView;
    std::shared_ptr<platform::UIDrawingView> stackView;
    std::shared_ptr<platform::UIDrawingView> chainView;
    std::shared_ptr<platform::UIDrawingView> sequencerView;
    std::shared_ptr<platform::UIDrawingView> impulseView;
    std::shared_ptr<platform::UILabel> pauseLabel;
    std::shared_ptr<platform::UIButton> slowerButton;
    std::shared_ptr<platform::UIButton> fasterButton;
    std::shared_ptr<platform::UILabel> statusLabel;

    std::shared_ptr<CurveWall> _wall;
    std::vector<std::unique_ptr<Exhibit>> _exhibits;
    ImpulseExhibit* _impulse = nullptr; // one of the exhibits
    std::shared_ptr<platform::Timer> _clock;
    Movement _movement;
    bool _isPaused = false;
    std::int64_t _ticks = 0;
    double _tickMicroseconds = 0; // smoothed
};

} // namespace tonewright

// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/GalleryController.hpp"

#include "platform/foundation/fatal.hpp"
#include "platform/ui/InterfaceConnections.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>

namespace tonewright {
namespace {

// The lengths of a movement in frames. The gallery starts with the middle one.
constexpr std::array<std::int64_t, 5> Speeds = {480, 240, 120, 60, 30};

constexpr int StatusTicks = 15;    // ticks between two updates of the status line
constexpr double Smoothing = 0.05; // weight of the latest tick in the displayed cost

} // namespace

GalleryController::GalleryController(const platform::NSCoder& coder)
    : UIViewController(coder) {}

GalleryController::~GalleryController() {
    if (_clock) _clock->invalidate();
}

std::shared_ptr<GalleryController> GalleryController::initWithCoder(const platform::NSCoder& coder) {
    return std::make_shared<GalleryController>(coder);
}

void GalleryController::offerConnections(platform::InterfaceConnections& connections) {
    connections.outlet("curvesView", curvesView);
    connections.outlet("stackView", stackView);
    connections.outlet("chainView", chainView);
    connections.outlet("sequencerView", sequencerView);
    connections.outlet("impulseView", impulseView);
    connections.outlet("pauseLabel", pauseLabel);
    connections.outlet("slowerButton", slowerButton);
    connections.outlet("fasterButton", fasterButton);
    connections.outlet("statusLabel", statusLabel);
    connections.action("onPauseButton:", this, &GalleryController::onPauseButton);
    connections.action("onRestartButton:", this, &GalleryController::onRestartButton);
    connections.action("onSlowerButton:", this, &GalleryController::onSlowerButton);
    connections.action("onFasterButton:", this, &GalleryController::onFasterButton);
    connections.action("onFlickButton:", this, &GalleryController::onFlickButton);
}

void GalleryController::viewDidLoad() {
    for (const bool isMissing : {!curvesView, !stackView, !chainView, !sequencerView, !impulseView,
                                 !pauseLabel, !slowerButton, !fasterButton, !statusLabel}) {
        if (isMissing) platform::fatal("The gallery's interface description lacks one of its outlets");
    }
    _wall = std::make_shared<CurveWall>();
    _wall->setView(curvesView);
    addChildViewController(_wall);
    (void)_wall->view(); // loads the view
    _exhibits.push_back(makeStackExhibit(stackView));
    _exhibits.push_back(makeChainExhibit(chainView));
    _exhibits.push_back(makeSequencerExhibit(sequencerView));
    auto impulse = std::make_unique<ImpulseExhibit>(impulseView);
    _impulse = impulse.get();
    _exhibits.push_back(std::move(impulse));
    _wall->onChosen = [this](EnumEasing type) {
        _movement.type = type;
        restart();
    };
    _wall->choose(_movement.type);
    _clock = platform::Timer::scheduledTimerWithTimeInterval(static_cast<double>(FrameSeconds), true,
                                                             [this] { frame(); });
}

void GalleryController::viewDidLayoutSubviews() {
    show();
}

void GalleryController::restart() {
    _wall->restart(_movement.frames);
    for (const auto& exhibit : _exhibits) exhibit->restart(_movement);
    show();
    showStatus();
}

void GalleryController::frame() {
    if (_isPaused) return;
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    _wall->tick();
    for (const auto& exhibit : _exhibits) exhibit->tick();
    const double microseconds = std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
    _tickMicroseconds += (microseconds - _tickMicroseconds) * (_ticks == 0 ? 1 : Smoothing);
    show();
    if (_ticks++ % StatusTicks == 0) showStatus();
}

void GalleryController::show() {
    _wall->show();
    for (const auto& exhibit : _exhibits) exhibit->show();
}

void GalleryController::showStatus() {
    std::int64_t tweens = _wall->tweens();
    for (const auto& exhibit : _exhibits) tweens += exhibit->tweens();
    char cost[48];
    std::snprintf(cost, sizeof cost, "%.1f µs", _tickMicroseconds);
    statusLabel->setText("Frame " + std::to_string(_wall->frame()) + " of " +
                         std::to_string(_movement.frames) + " · " + std::string(easingName(_movement.type)) +
                         " · " + cost + " a tick of " + std::to_string(tweens) + " tweens");
}

void GalleryController::onPauseButton(const Sender&) {
    _isPaused = !_isPaused;
    pauseLabel->setText(_isPaused ? "_Play" : "_Pause");
    showStatus();
}

void GalleryController::onRestartButton(const Sender&) {
    restart();
}

void GalleryController::changeSpeed(int direction) {
    const auto* speed = std::find(Speeds.begin(), Speeds.end(), _movement.frames) + direction;
    if (speed < Speeds.begin() || speed >= Speeds.end()) return;
    _movement.frames = *speed;
    slowerButton->setEnabled(*speed != Speeds.front());
    fasterButton->setEnabled(*speed != Speeds.back());
    restart();
}

void GalleryController::onSlowerButton(const Sender&) {
    changeSpeed(-1);
}

void GalleryController::onFasterButton(const Sender&) {
    changeSpeed(1);
}

void GalleryController::onFlickButton(const Sender&) {
    _impulse->flick();
}

} // namespace tonewright

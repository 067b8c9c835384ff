// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/tween/Crowd.hpp"

#include <QEasingCurve>
#include <QParallelAnimationGroup>
#include <QVariantAnimation>
#include <vector>

namespace bench {
namespace {

class QtCrowd final : public Crowd {
  public:
    explicit QtCrowd(std::size_t count) {
        _made.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            auto animation = std::make_unique<QVariantAnimation>();
            animation->setStartValue(0.0F);
            animation->setEndValue(Destination);
            animation->setDuration(Frames);
            animation->setEasingCurve(QEasingCurve::InOutQuad);
            QObject::connect(animation.get(), &QVariantAnimation::valueChanged,
                             [this](const QVariant& value) { _sum += static_cast<double>(value.toFloat()); });
            _made.push_back(std::move(animation));
        }
    }
    void add() override {
        for (auto& animation : _made) _group.addAnimation(animation.release()); // the group owns it
        _group.start();
        _group.pause(); // paused, because `tick` sets the time
    }
    void tick() override { _group.setCurrentTime(_group.currentTime() + 1); }
    void remove() override {
        while (_group.animationCount() > 0) {
            _made[static_cast<std::size_t>(_group.animationCount() - 1)].reset(
                _group.takeAnimation(_group.animationCount() - 1));
        }
    }
    double sum() const override { return _sum; }

  private:
    std::vector<std::unique_ptr<QAbstractAnimation>> _made;
    QParallelAnimationGroup _group;
    double _sum = 0;
};

} // namespace

std::unique_ptr<Crowd> makeQtCrowd(std::size_t count) {
    return std::make_unique<QtCrowd>(count);
}

} // namespace bench

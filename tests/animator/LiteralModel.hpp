// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The animation classes written as simply as possible: whole lists are copied, scanned and sorted every time.
// The engine must behave exactly like this model. Timers are counted but do not run, fatal errors throw
// Fatal, and printed lines are collected.
#pragma once

#include "shared/Common/Animator/Easing.hpp"
#include "tests/support/testing.hpp"

namespace literal {

using tonewright::EnumEasing;

struct Fatal {};

inline std::vector<std::string> lines;
inline void print(const std::string& line) {
    lines.push_back(line);
}

inline std::int64_t plus(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) throw Fatal{};
    return sum;
}

using Timer = std::shared_ptr<void>; // keeps its owner alive
inline std::vector<std::shared_ptr<Timer>> runLoop;

template <class... Arguments>
void call(const std::function<void(Arguments...)>& callback, std::type_identity_t<Arguments>... arguments) {
    const auto copy = callback;
    if (copy) copy(arguments...);
}

class Timed : public std::enable_shared_from_this<Timed> {
  public:
    Timed() = default;
    virtual ~Timed() = default;
    Timed(const Timed&) = delete;
    Timed& operator=(const Timed&) = delete;

    virtual void start() { _timer = runLoop.emplace_back(std::make_shared<Timer>(shared_from_this())); }
    // Returns itself, because it might otherwise be destroyed together with its timer.
    std::shared_ptr<Timed> stopTimer() {
        auto self = shared_from_this();
        if (_timer) runLoop.erase(std::find(runLoop.begin(), runLoop.end(), std::exchange(_timer, nullptr)));
        return self;
    }

    std::shared_ptr<Timer> _timer;
};

class Animator : public Timed {
  public:
    inline static std::int64_t classCount = 0;

    Animator() { ++classCount; }
    ~Animator() override { --classCount; }

    virtual void setup(float source, float destination, std::int64_t frames, float interval = 0.009F,
                       EnumEasing type = EnumEasing::EASING_easeNone) {
        _source = source;
        _destination = destination;
        _value = _source;
        _amount = _destination - _source;
        _frames = frames;
        _frameCount = _frames;
        _step = 0;
        _interval = interval;
        _type = type;
        if (_frames < 0) _frames = 0;
        if (_amount == 0) _frames = 0;
    }
    virtual void reverse() { setup(_destination, _source, _frames, _interval, _type); }
    virtual void undo() {
        const auto self = shared_from_this();
        _frames = 1;
        _step = 0;
        setup(_source, _destination, 1);
        animate();
        animate();
    }
    virtual void animate() {
        const auto self = shared_from_this();
        if (_frames < 0) return;
        if (_step < _frames) {
            call(onAnimation, *this, _value);
            _step = plus(_step, 1);
            _value = ease();
            return;
        }
        _value = _destination;
        if (!looped) {
            stop();
            call(onFinished, *this, _value);
        } else {
            call(onLoop, *this);
            reverse();
        }
    }
    virtual bool isFinished() { return _frames < 0; }
    virtual void stop() {
        const auto self = stopTimer();
        _step = 0;
        _frames = -1;
        looped = false;
    }
    virtual void rewind() { setup(_source, _destination, _frameCount); }
    virtual void setType(EnumEasing type) { _type = type; }
    virtual void setInterval(float interval) { _interval = interval; }

    virtual float easeOutBack(std::int64_t t, float b, float c, std::int64_t d) {
        return tonewright::easingFunction(EnumEasing::EASING_easeOutBack)(t, b, c, d);
    }

    std::int64_t _startFrame = 0, _frameCount = 0;
    float _source = 0, _value = 0, _destination = 0, _amount = 0;
    std::int64_t _frames = -1, _step = 0;
    float _interval = 0.005F;
    EnumEasing _type = EnumEasing::EASING_easeNone;
    bool looped = false;
    std::function<void(Animator&, float)> onAnimation, onFinished;
    std::function<void(Animator&)> onLoop;

  private:
    float ease() {
        if (_type == EnumEasing::EASING_easeOutBack) return easeOutBack(_step, _source, _amount, _frames);
        if (_type == EnumEasing::EASING_easeOutInBack && _step < _frames / 2) {
            return easeOutBack(_step * 2, _source, _amount / 2, _frames);
        }
        return tonewright::easingFunction(_type)(_step, _source, _amount, _frames);
    }
};

using Members = std::vector<std::shared_ptr<Animator>>;

inline Members::iterator find(Members& members, const Animator& item) {
    return std::find_if(members.begin(), members.end(), [&](const auto& m) { return m.get() == &item; });
}

// Removes the first entry that is `item`; the reference is released after the list has become consistent.
inline void remove(Members& members, const Animator& item) {
    const auto place = find(members, item);
    if (place == members.end()) throw Fatal{};
    const auto gone = *place;
    members.erase(place);
}

template <class Self>
class Group : public Timed {
  public:
    std::int64_t getCount() const { return static_cast<std::int64_t>(_animators.size()); }
    void add(std::shared_ptr<Animator> item) {
        if (item) _animators.push_back(std::move(item));
    }

    Members _animators;
    std::function<void(Self&, Animator&)> onAnimation;
    std::function<void(Self&)> onFinished;
};

class AnimatorStack : public Group<AnimatorStack> {
  public:
    virtual Members getItems() { return _animators; }
    virtual void stop() { reset(); }
    virtual void animate() {
        const auto self = shared_from_this();
        bool animated = false;
        {
            const Members snapshot = _animators;
            for (const auto& member : snapshot) {
                if (member->isFinished()) continue;
                call(onAnimation, *this, *member);
                member->animate();
                animated = true;
                if (!member->isFinished()) continue;
                remove(_animators, *member);
                call(onRemovedItem, *this, *member);
            }
        }
        if (animated) return;
        call(onFinished, *this);
        stop();
    }
    virtual void reset() {
        const auto self = stopTimer();
        const Members gone = std::exchange(_animators, {});
    }

    std::function<void(AnimatorStack&, Animator&)> onRemovedItem;
};

class AnimatorChain : public Group<AnimatorChain> {
  public:
    virtual void remove(const std::shared_ptr<Animator>& item) {
        if (item) literal::remove(_animators, *item);
    }
    virtual void removeAll() {
        const auto self = shared_from_this();
        stop();
        const Members gone = std::exchange(_animators, {});
    }
    virtual std::int64_t getCurrentIndex() { return _currentIndex; }
    virtual std::shared_ptr<Animator> getCurrentItem() {
        if (0 < _currentIndex && _currentIndex < getCount() - 1) {
            return _animators[static_cast<std::size_t>(_currentIndex)];
        }
        return nullptr;
    }
    virtual void stop() {
        const auto self = stopTimer();
        _currentIndex = 0;
    }
    virtual void setBackwards(bool direction) { _direction = direction ? -1 : 1; }
    virtual void animate() {
        const auto self = shared_from_this();
        if (_animators.empty()) {
            print("WARNUNG: Es sind keine Animator Objekte definiert.");
            return;
        }
        if (_currentIndex < 0 || _currentIndex >= getCount()) _currentIndex = getCount() - 1;
        const auto member = _animators[static_cast<std::size_t>(_currentIndex)];
        call(onAnimation, *this, *member);
        if (!async) {
            member->animate();
            if (member->isFinished()) _currentIndex = plus(_currentIndex, _direction);
        } else {
            member->start();
            _currentIndex = plus(_currentIndex, _direction);
        }
        if (_direction > 0 ? _currentIndex >= getCount() : _currentIndex <= 0) {
            call(onFinished, *this);
            stop();
        }
    }

    std::int64_t _currentIndex = 0, _direction = 1;
    bool async = false;
};

class AnimationSequencer : public Group<AnimationSequencer> {
  public:
    virtual void add(std::shared_ptr<Animator> item, std::int64_t at) {
        if (!item) {
            print("FEHLER: Das Animator Objekt ist ungültig.");
            return;
        }
        item->_startFrame = at;
        _animators.push_back(std::move(item));
        std::stable_sort(_animators.begin(), _animators.end(),
                         [](const auto& a, const auto& b) { return a->_startFrame < b->_startFrame; });
        calculateFrames();
    }
    virtual void remove(const std::shared_ptr<Animator>& item) {
        const auto held = item;
        if (held) literal::remove(_animators, *held);
        calculateFrames();
    }
    virtual void removeAll() { const Members gone = std::exchange(_animators, {}); }
    virtual std::int64_t getCurrentCount() { return static_cast<std::int64_t>(_animatedItems.size()); }
    virtual std::int64_t getCurrentFrame() { return _currentFrame; }
    virtual std::int64_t getCurrentIndex() { return _currentIndex; }
    void advance() {
        const auto self = shared_from_this();
        _currentFrame = plus(_currentFrame, 1);
        animate();
    }
    virtual void stop() {
        const auto self = stopTimer();
        _currentIndex = 0;
        _currentFrame = 0;
    }
    virtual void pause() { _suspended = true; }
    virtual void continue_() { _suspended = false; }
    virtual void rewind() {
        const Members members = _animators;
        for (const auto& member : members) member->rewind();
    }
    virtual void seek(std::int64_t to) {
        _currentFrame = to;
        _currentIndex = 0;
        if (_currentFrame > _maxFrames) {
            stop();
            return;
        }
        const Members members = _animators;
        for (const auto& member : members) {
            if (member->_startFrame < _currentFrame) {
                member->stop();
                _currentIndex = plus(_currentIndex, 1);
            } else {
                member->rewind();
            }
        }
    }
    virtual void animate() {
        if (_suspended) return;
        if (_animators.empty()) {
            print("WARNUNG: Es sind keine Animator Objekte definiert.");
            return;
        }
        const auto self = shared_from_this();
        findAnimators();
        {
            const Members snapshot = _animatedItems;
            for (const auto& member : snapshot) {
                call(onAnimation, *this, *member);
                member->animate();
                if (member->isFinished()) literal::remove(_animatedItems, *member);
            }
        }
        if (_currentFrame >= _maxFrames) {
            call(onFinished, *this);
            stop();
        }
    }
    virtual void calculateFrames() {
        for (const auto& member : _animators) {
            _maxFrames = std::max(_maxFrames, plus(member->_startFrame, member->_frames));
        }
    }

    std::int64_t _currentFrame = 0, _maxFrames = 0;
    Members _animatedItems;
    std::int64_t _currentIndex = 0;
    bool _suspended = false;

  private:
    void findAnimators() {
        if (_currentIndex > getCount()) throw Fatal{};
        for (std::int64_t i = _currentIndex; i < getCount(); ++i) {
            const auto member = _animators[static_cast<std::size_t>(i)];
            if (_currentFrame >= member->_startFrame && !member->isFinished()) {
                _currentIndex = i;
                if (find(_animatedItems, *member) == _animatedItems.end()) _animatedItems.push_back(member);
            }
        }
    }
};

} // namespace literal

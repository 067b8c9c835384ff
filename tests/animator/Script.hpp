// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A random sequence of operations on a small population of animators, groups and impulses, of the engine or
// of the literal model. It writes down every callback, every call of an overridable operation, every printed
// line and all fields; two worlds that behave alike write the same. Callbacks do further operations
// themselves: they stop, remove, add, tick, replace callbacks and let go of owners.
#pragma once

#include "tests/animator/AnimatorInspection.hpp"

#include <bit>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace scripted {

using Look = tonewright::AnimatorInspection;
using tonewright::EnumEasing;

struct Plan {
    std::uint64_t seed = 0;
    int steps = 60;
    std::size_t animators = 8; // slots
    bool misuse = false;       // what is fatal: removing strangers, start frames at the ends of the range
};

template <class World>
class Script {
    using Animator = typename World::Animator;
    using Stack = typename World::AnimatorStack;
    using Chain = typename World::AnimatorChain;
    using Sequencer = typename World::AnimationSequencer;
    using Impulse = typename World::Impulse;

  public:
    Script(const Plan& plan, std::function<void(std::string)> write)
        : _plan(plan)
        , _random(plan.seed)
        , _write(std::move(write))
        , _alive(World::classCount())
        , _animators(plan.animators)
        , _stacks(2)
        , _chains(2)
        , _sequencers(3)
        , _impulses(2) {
        current = this;
    }
    ~Script() {
        for (const auto& cleanUp : _cleanUps) cleanUp();
        current = nullptr;
    }
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    void run() {
        for (auto& slot : _animators) renew(slot);
        for (auto& slot : _stacks) renew(slot);
        for (auto& slot : _chains) renew(slot);
        for (auto& slot : _sequencers) renew(slot);
        for (auto& slot : _impulses) renew(slot);
        for (int i = 0; i < _plan.steps; ++i) {
            _calls = 0;
            act();
            dump();
        }
    }

    void say(const std::string& what) {
        const std::string lines = World::takePrinted();
        if (!lines.empty()) _write("printed: " + lines);
        _write(what);
    }
    std::string name(const void* object) {
        const auto place = _names.find(object);
        return place == _names.end() ? "?" : std::to_string(place->second);
    }

    inline static thread_local Script* current = nullptr;

  private:
    // An animator of a subclass: writes down when it is asked, and has curves of its own.
    struct Traced final : Animator {
        void note(const char* what) { current->say(current->name(this) + " is asked to " + what); }
        void animate() override {
            note("animate");
            Animator::animate();
        }
        bool isFinished() override {
            note("isFinished");
            return Animator::isFinished();
        }
        void stop() override {
            note("stop");
            Animator::stop();
        }
        void reverse() override {
            note("reverse");
            Animator::reverse();
        }
        void rewind() override {
            note("rewind");
            Animator::rewind();
        }
        float easeOutBack(std::int64_t t, float b, float c, std::int64_t d) override {
            note("easeOutBack");
            return Animator::easeOutBack(t, b, c, d) + 1;
        }
    };

    std::uint64_t below(std::uint64_t count) { return _random() % count; }
    bool chance(std::uint64_t inHowMany) { return below(inHowMany) == 0; }
    template <class T>
    T& any(std::vector<T>& slots) {
        return slots[below(slots.size())];
    }

    std::int64_t someFrames() {
        constexpr std::int64_t Choice[] = {0, 1, 1, 2, 2, 3, 4, 6, -1, -5};
        return Choice[below(std::size(Choice))];
    }
    std::int64_t someStart() {
        if (_plan.misuse && chance(40))
            return chance(2) ? std::numeric_limits<std::int64_t>::max() - 2
                             : std::numeric_limits<std::int64_t>::min();
        return static_cast<std::int64_t>(below(10)) - 1;
    }
    float someValue() {
        constexpr float Choice[] = {0,
                                    0,
                                    1,
                                    10,
                                    -3.5F,
                                    0.1F,
                                    1e30F,
                                    std::numeric_limits<float>::infinity(),
                                    std::numeric_limits<float>::quiet_NaN(),
                                    100};
        return Choice[below(std::size(Choice))];
    }
    EnumEasing someType() { return static_cast<EnumEasing>(below(44)); } // two more than there are
    bool someBool() { return chance(2); }

    template <class Object>
    void remember(const std::shared_ptr<Object>& object, std::function<void(Object&)> cleanUp) {
        _names[object.get()] = _nextName++;
        _cleanUps.push_back([weak = std::weak_ptr<Object>(object), cleanUp] {
            if (const auto strong = weak.lock()) cleanUp(*strong);
        });
    }

    void renew(std::shared_ptr<Animator>& slot) {
        auto made =
            chance(4) ? std::shared_ptr<Animator>(std::make_shared<Traced>()) : std::make_shared<Animator>();
        remember<Animator>(made, [](Animator& a) {
            a.onAnimation = nullptr, a.onFinished = nullptr, a.onLoop = nullptr;
            a.Animator::stop();
        });
        if (!chance(5)) made->setup(someValue(), someValue(), someFrames(), 0.009F, someType());
        slot = std::move(made); // the old one may go here
        const auto held = slot;
        for (int i = 0; i < 3; ++i) listen(*held);
    }
    template <class Group>
    void renewGroup(std::shared_ptr<Group>& slot) {
        auto made = std::make_shared<Group>();
        remember<Group>(made, [](Group& g) {
            g.onAnimation = nullptr, g.onFinished = nullptr;
            g.stop();
        });
        slot = std::move(made);
        const auto held = slot;
        for (int i = 0; i < 3; ++i) listen(*held);
    }
    void renew(std::shared_ptr<Stack>& slot) { renewGroup(slot); }
    void renew(std::shared_ptr<Chain>& slot) { renewGroup(slot); }
    void renew(std::shared_ptr<Sequencer>& slot) { renewGroup(slot); }
    void renew(std::shared_ptr<Impulse>& slot) { renewGroup(slot); }

    // What every callback does: write down what can be seen from it, and sometimes act.
    void react(const char* kind, const void* owner, const std::string& details) {
        say(std::string(kind) + " " + name(owner) + details + " counts " + counts());
        if (++_calls > 200 || _depth >= 3 || !chance(3)) return;
        ++_depth;
        act();
        --_depth;
    }

    // Installs a callback: one that fits inside, one that does not, one that keeps another animator, or none.
    template <class... Arguments, class Callback>
    void install(Callback& callback, const char* kind, std::function<std::string(Arguments...)> describe) {
        const auto body = [this, kind, describe = std::move(describe)](auto& owner, auto&&... rest) {
            react(kind, &owner, describe(rest...));
        };
        switch (below(4)) {
        case 0:
            callback = nullptr;
            break;
        case 1:
            callback = [this, kind](auto& owner, auto&&...) { react(kind, &owner, " (plain)"); };
            break;
        case 2:
            callback = [body, kept = any(_animators)](auto& owner, auto&&... rest) {
                body(owner, rest...);
                if (kept) current->say("kept " + current->name(kept.get()));
            };
            break;
        default:
            callback = body;
        }
    }
    void listen(Animator& animator) {
        const std::function<std::string(float)> describe = [](float value) { return " at " + bits(value); };
        switch (below(3)) {
        case 0:
            return install<float>(animator.onAnimation, "onAnimation", describe);
        case 1:
            return install<float>(animator.onFinished, "onFinished", describe);
        default:
            return install<>(animator.onLoop, "onLoop", std::function<std::string()>([] { return ""; }));
        }
    }
    template <class Group>
    void listenToGroup(Group& group) {
        const std::function<std::string(const Animator&)> describe = [this](const Animator& member) {
            return " of " + name(&member);
        };
        if (someBool()) return install<>(group.onFinished, "group's onFinished", nothing());
        install<const Animator&>(group.onAnimation, "group's onAnimation", describe);
        if constexpr (std::is_same_v<Group, Stack>)
            if (someBool()) install<const Animator&>(group.onRemovedItem, "onRemovedItem", describe);
    }
    static std::function<std::string()> nothing() {
        return [] { return std::string(); };
    }
    void listen(Stack& stack) { listenToGroup(stack); }
    void listen(Chain& chain) { listenToGroup(chain); }
    void listen(Sequencer& sequencer) { listenToGroup(sequencer); }
    void listen(Impulse& impulse) {
        switch (below(3)) {
        case 0:
            return install<>(impulse.onAnimation, "impulse's onAnimation", nothing());
        case 1:
            return install<>(impulse.onFinished, "impulse's onFinished", nothing());
        default:
            return install<>(impulse.onCollision, "onCollision", nothing());
        }
    }

    void act() {
        const auto animator = any(_animators);
        const auto stack = any(_stacks);
        const auto chain = any(_chains);
        const auto sequencer = any(_sequencers);
        const auto impulse = any(_impulses);
        switch (below(5)) {
        case 0:
            return animator ? actOn(*animator) : renew(any(_animators));
        case 1:
            return actOn(*stack, animator);
        case 2:
            return actOn(*chain, animator);
        case 3:
            return actOn(*sequencer, animator);
        default:
            return chance(2) ? actOn(*impulse) : exchange();
        }
    }

    // The handles held by act() are gone when it returns; from then on only groups and callbacks keep things.
    void exchange() {
        switch (below(8)) {
        case 0:
            return renew(any(_stacks));
        case 1:
            return renew(any(_chains));
        case 2:
            return renew(any(_sequencers));
        case 3:
            return renew(any(_impulses));
        case 4:
            any(_animators) = nullptr;
            return;
        default:
            return renew(any(_animators));
        }
    }

    void actOn(Animator& animator) {
        switch (below(13)) {
        case 0:
        case 1:
            return animator.setup(someValue(), someValue(), someFrames(), 0.009F, someType());
        case 2:
            return animator.reverse();
        case 3:
            return animator.undo();
        case 4:
            return animator.rewind();
        case 5:
            animator.looped = someBool();
            return;
        case 6:
            return animator.setType(someType());
        case 7:
            return animator.setInterval(someValue());
        case 8:
            return animator.start();
        case 9:
            return animator.stop();
        case 10:
            return listen(animator);
        default:
            return animator.animate();
        }
    }
    void actOn(Stack& stack, const std::shared_ptr<Animator>& animator) {
        switch (below(12)) {
        case 0:
            return stack.start();
        case 1:
            if (chance(3)) stack.stop();
            return;
        case 2:
            return listen(stack);
        case 3:
        case 4:
        case 5:
            return stack.add(animator);
        default:
            return stack.animate();
        }
    }
    void actOn(Chain& chain, const std::shared_ptr<Animator>& animator) {
        switch (below(13)) {
        case 0:
            return chain.start();
        case 1:
            if (chance(3)) chain.stop();
            return;
        case 2:
            return listen(chain);
        case 3:
        case 4:
            return chain.add(animator);
        case 5:
            if (isMember(chain, animator) || (_plan.misuse && chance(30))) chain.remove(animator);
            return;
        case 6:
            if (chance(4)) chain.removeAll();
            return;
        case 7:
            return chain.setBackwards(someBool());
        case 8:
            chain.async = chance(3);
            return;
        default:
            return chain.animate();
        }
    }
    void actOn(Sequencer& sequencer, const std::shared_ptr<Animator>& animator) {
        switch (below(18)) {
        case 0:
            return sequencer.start();
        case 1:
            if (chance(3)) sequencer.stop();
            return;
        case 2:
            return listen(sequencer);
        case 3:
        case 4:
        case 5:
        case 6:
            return sequencer.add(animator, someStart());
        case 7:
            if (isMember(sequencer, animator) || (_plan.misuse && chance(30))) sequencer.remove(animator);
            return;
        case 8:
            if (chance(8)) sequencer.removeAll();
            return;
        case 9:
            return someBool() ? sequencer.pause() : sequencer.continue_();
        case 10:
            return sequencer.rewind();
        case 11:
            return sequencer.seek(someStart());
        case 12:
            return chance(2) ? sequencer.animate() : sequencer.calculateFrames();
        default:
            return Look::advance(sequencer);
        }
    }
    void actOn(Impulse& impulse) {
        switch (below(10)) {
        case 0:
        case 1:
            return impulse.setup(someFrames(), someValue(), 0.009F, chance(4) ? someValue() : 0.5F);
        case 2:
            return impulse.setMinMax(someBool(), -someValue(), someValue());
        case 3:
            return impulse.start();
        case 4:
            return impulse.stop();
        case 5:
            return listen(impulse);
        default:
            return impulse.animate();
        }
    }

    template <class Group>
    bool isMember(Group& group, const std::shared_ptr<Animator>& animator) {
        for (const auto& member : Look::members(group))
            if (member == animator) return true;
        return false;
    }

    static std::string bits(float value) {
        return value != value ? "nan" : std::to_string(std::bit_cast<std::uint32_t>(value));
    }
    template <class Members>
    std::string names(const Members& members) {
        std::string result = "[";
        for (const auto& member : members) result += name(member.get()) + " ";
        return result + "]";
    }
    std::string counts() {
        std::string result = std::to_string(World::classCount() - _alive);
        for (auto& stack : _stacks) result += " " + std::to_string(stack->getCount());
        for (auto& chain : _chains)
            result +=
                " " + std::to_string(chain->getCount()) + "@" + std::to_string(chain->getCurrentIndex());
        for (auto& sequencer : _sequencers)
            result += " " + std::to_string(sequencer->getCount()) + "/" +
                      std::to_string(sequencer->getCurrentCount()) + "@" +
                      std::to_string(sequencer->getCurrentFrame()) + "," +
                      std::to_string(sequencer->getCurrentIndex());
        return result;
    }

    void dump() {
        const auto number = [](auto value) { return " " + std::to_string(value); };
        for (auto& a : _animators) {
            if (!a) continue;
            say("animator " + name(a.get()) + number(Look::startFrame(*a)) + number(Look::frameCount(*a)) +
                number(Look::timer(*a) != nullptr) + " " + bits(Look::source(*a)) + " " +
                bits(Look::value(*a)) + " " + bits(Look::destination(*a)) + " " + bits(Look::amount(*a)) +
                number(Look::frames(*a)) + number(Look::step(*a)) + " " + bits(Look::interval(*a)) +
                number(static_cast<std::int64_t>(Look::type(*a))) + number(a->looped));
        }
        for (auto& s : _stacks)
            say("stack " + name(s.get()) + number(Look::timer(*s) != nullptr) + names(Look::members(*s)));
        for (auto& c : _chains) {
            const auto item = c->getCurrentItem();
            say("chain " + name(c.get()) + number(Look::timer(*c) != nullptr) + names(Look::members(*c)) +
                number(Look::direction(*c)) + " " + (item ? name(item.get()) : "none"));
        }
        for (auto& s : _sequencers) {
            // Looking at the order settles it, so that it is not looked at every time.
            say("sequencer " + name(s.get()) + number(Look::timer(*s) != nullptr) +
                number(Look::maxFrames(*s)) + names(Look::playing(*s)) + number(Look::suspended(*s)) +
                (chance(5) ? names(Look::members(*s)) : ""));
        }
        for (auto& i : _impulses)
            say("impulse " + name(i.get()) + number(Look::timer(*i) != nullptr) + number(Look::frames(*i)) +
                number(Look::step(*i)) + " " + bits(Look::amount(*i)) + " " + bits(Look::value(*i)) + " " +
                bits(Look::source(*i)) + " " + bits(Look::interval(*i)));
        say(counts());
    }

    Plan _plan;
    std::mt19937_64 _random;
    std::function<void(std::string)> _write;
    std::int64_t _alive; // before the script
    std::unordered_map<const void*, int> _names;
    int _nextName = 0;
    int _depth = 0;
    int _calls = 0; // of callbacks in the present step
    std::vector<std::function<void()>> _cleanUps;
    std::vector<std::shared_ptr<Animator>> _animators;
    std::vector<std::shared_ptr<Stack>> _stacks;
    std::vector<std::shared_ptr<Chain>> _chains;
    std::vector<std::shared_ptr<Sequencer>> _sequencers;
    std::vector<std::shared_ptr<Impulse>> _impulses;
};

} // namespace scripted

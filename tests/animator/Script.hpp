// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A random sequence of operations on a few animators, groups and impulses, either of the engine or of the
// literal model. Every callback, every call of a virtual operation, every printed line and all fields are
// recorded; two worlds that behave alike produce the same record. Callbacks perform further operations: they
// stop, remove, add, tick, replace callbacks and release owners.
#pragma once

#include "tests/animator/AnimatorInspection.hpp"
#include "tests/support/testing.hpp"

namespace scripted {

using Look = tonewright::AnimatorInspection;
using tonewright::EnumEasing;

struct Plan {
    std::uint64_t seed = 0;
    int steps = 60;
    std::size_t animators = 8; // number of animator slots
    bool misuse = false;       // adds fatal operations, such as removing strangers and extreme start frames
};

template <class World>
class Script : tonewright::test::Uncopied {
    using Animator = typename World::Animator;
    using Stack = typename World::AnimatorStack;
    using Chain = typename World::AnimatorChain;
    using Sequencer = typename World::AnimationSequencer;

  public:
    explicit Script(const Plan& plan)
        : _plan(plan)
        , _random(plan.seed)
        , _alive(World::classCount())
        , _animators(plan.animators)
        , _stacks(2)
        , _chains(2)
        , _sequencers(3) {
        current = this;
    }
    ~Script() {
        for (const auto& cleanUp : _cleanUps) cleanUp();
        current = nullptr;
    }

    void run() {
        const auto fill = [this](auto& slots) {
            for (auto& slot : slots) this->renew(slot);
        };
        fill(_animators), fill(_stacks), fill(_chains), fill(_sequencers);
        for (int i = 0; i < _plan.steps; ++i) {
            _calls = 0;
            act();
            dump();
        }
    }

    void say(const std::string& what) { World::say(what); }
    std::string name(const void* object) {
        const auto place = _names.find(object);
        return place == _names.end() ? "?" : std::to_string(place->second);
    }

    inline static thread_local Script* current = nullptr;

  private:
    // An animator of a subclass, which records the calls of its operations and has curves of its own.
    struct Traced final : Animator {
        void note(const char* what) { current->say(current->name(this) + " is asked to " + what); }
        void animate() override { note("animate"), Animator::animate(); }
        bool isFinished() override { return note("isFinished"), Animator::isFinished(); }
        void stop() override { note("stop"), Animator::stop(); }
        void reverse() override { note("reverse"), Animator::reverse(); }
        void setup(float source, float destination, std::int64_t frames, float interval,
                   EnumEasing type) override {
            note("setup"), Animator::setup(source, destination, frames, interval, type);
        }
        void rewind() override { note("rewind"), Animator::rewind(); }
        float easeOutBack(std::int64_t t, float b, float c, std::int64_t d) override {
            return note("easeOutBack"), Animator::easeOutBack(t, b, c, d) + 1;
        }
    };

    std::uint64_t below(std::uint64_t count) { return _random() % count; }
    bool chance(std::uint64_t inHowMany) { return below(inHowMany) == 0; }
    template <class T>
    T& any(std::vector<T>& slots) {
        return slots[below(slots.size())];
    }

    template <class T>
    T oneOf(std::initializer_list<T> values) {
        return values.begin()[below(values.size())];
    }
    std::int64_t someFrames() { return oneOf<std::int64_t>({0, 1, 1, 2, 2, 3, 4, 6, -1, -5}); }
    std::int64_t someStart() {
        using Limits = std::numeric_limits<std::int64_t>;
        if (_plan.misuse && chance(40)) return oneOf({Limits::max() - 2, Limits::min()});
        return static_cast<std::int64_t>(below(10)) - 1;
    }
    float someValue() {
        return oneOf({0.0F, 0.0F, 1.0F, 10.0F, -3.5F, 0.1F, 1e30F, INFINITY, std::nanf(""), 100.0F});
    }
    EnumEasing someType() { return static_cast<EnumEasing>(below(44)); } // including two invalid values

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
        replace(slot, std::move(made));
    }
    template <class Group>
    void renew(std::shared_ptr<Group>& slot) {
        auto made = std::make_shared<Group>();
        remember<Group>(made, [](Group& g) {
            g.onAnimation = nullptr, g.onFinished = nullptr;
            g.stop();
        });
        replace(slot, std::move(made));
    }
    template <class Object>
    void replace(std::shared_ptr<Object>& slot, std::shared_ptr<Object> made) {
        const auto held = made;
        slot = std::move(made); // the old object may be destroyed here
        for (int i = 0; i < 3; ++i) listen(*held);
    }

    // Called by every callback: records what the callback can see, and sometimes acts.
    void react(const char* kind, const void* owner, const std::string& details) {
        say(std::string(kind) + " " + name(owner) + details + " counts " + counts());
        if (++_calls > 200 || _depth >= 3 || !chance(3)) return;
        ++_depth;
        act();
        --_depth;
    }

    struct Choice {
        std::uint64_t weight;
        std::function<void()> act;
    };
    void choose(std::initializer_list<Choice> choices) {
        std::uint64_t total = 0;
        for (const auto& choice : choices) total += choice.weight;
        std::uint64_t drawn = below(total);
        for (const auto& choice : choices) {
            if (drawn < choice.weight) return choice.act();
            drawn -= choice.weight;
        }
    }

    // Installs no callback, one that is small enough to be stored in place, or one that keeps an animator
    // alive.
    template <class Callback>
    void install(Callback& callback, const char* kind) {
        const auto body = [this, kind](auto& owner, const auto&... rest) {
            react(kind, &owner, (std::string() + ... + detail(rest)));
        };
        // Both callbacks read their captures after `react`, which may have replaced the callback.
        choose({{1, [&] { callback = nullptr; }},
                {1,
                 [&] {
                     callback = [this, kind](auto& owner, auto&&...) {
                         react(kind, &owner, " (plain)");
                         say(kind);
                     };
                 }},
                {2, [&] {
                     callback = [body, kept = any(_animators)](auto& owner, auto&&... rest) {
                         body(owner, rest...);
                         if (kept) current->say("kept " + current->name(kept.get()));
                     };
                 }}});
    }
    std::string detail(float value) { return " at " + text(value); }
    std::string detail(const Animator& member) { return " of " + name(&member); }

    void listen(Animator& animator) {
        choose({{1, [&] { install(animator.onAnimation, "onAnimation"); }},
                {1, [&] { install(animator.onFinished, "onFinished"); }},
                {1, [&] { install(animator.onLoop, "onLoop"); }}});
    }
    template <class Group>
    void listen(Group& group) {
        if (chance(2)) return install(group.onFinished, "group's onFinished");
        install(group.onAnimation, "group's onAnimation");
        if constexpr (requires { group.onRemovedItem; }) {
            if (chance(2)) install(group.onRemovedItem, "onRemovedItem");
        }
    }

    void act() {
        const auto animator = any(_animators);
        const auto stack = any(_stacks);
        const auto chain = any(_chains);
        const auto sequencer = any(_sequencers);
        choose(
            {{2, [&] { animator ? actOn(*animator) : renew(any(_animators)); }},
             {2, [&] { actOn(*stack, animator); }},
             {2, [&] { actOn(*chain, animator); }},
             {2, [&] { actOn(*sequencer, animator); }},
             // The script releases its own handles here; from then on only groups and callbacks own objects.
             {1, [&] { exchange(); }}});
    }
    void exchange() {
        choose({{1, [&] { renew(any(_stacks)); }},
                {1, [&] { renew(any(_chains)); }},
                {1, [&] { renew(any(_sequencers)); }},
                {1, [&] { any(_animators) = nullptr; }},
                {3, [&] { renew(any(_animators)); }}});
    }

    void actOn(Animator& animator) {
        choose({{2, [&] { animator.setup(someValue(), someValue(), someFrames(), 0.009F, someType()); }},
                {1, [&] { animator.reverse(); }},
                {1, [&] { animator.undo(); }},
                {1, [&] { animator.rewind(); }},
                {1, [&] { animator.looped = chance(2); }},
                {1, [&] { animator.setType(someType()); }},
                {1, [&] { animator.setInterval(someValue()); }},
                {1, [&] { animator.start(); }},
                {1, [&] { animator.stop(); }},
                {1, [&] { listen(animator); }},
                {2, [&] { animator.animate(); }}});
    }
    void actOn(Stack& stack, const std::shared_ptr<Animator>& animator) {
        choose({{3, [&] { stack.start(); }},
                {1, [&] { stack.stop(); }},
                {3, [&] { listen(stack); }},
                {9, [&] { stack.add(animator); }},
                {18, [&] { stack.animate(); }}});
    }
    void actOn(Chain& chain, const std::shared_ptr<Animator>& animator) {
        choose({{3, [&] { chain.start(); }},
                {1, [&] { chain.stop(); }},
                {3, [&] { listen(chain); }},
                {6, [&] { chain.add(animator); }},
                {3, [&] { removeFrom(chain, animator); }},
                {1, [&] { chain.removeAll(); }},
                {3, [&] { chain.setBackwards(chance(2)); }},
                {3, [&] { chain.async = chance(3); }},
                {12, [&] { chain.animate(); }}});
    }
    void actOn(Sequencer& sequencer, const std::shared_ptr<Animator>& animator) {
        choose({{8, [&] { sequencer.start(); }},
                {3, [&] { sequencer.stop(); }},
                {8, [&] { listen(sequencer); }},
                {32, [&] { sequencer.add(animator, someStart()); }},
                {8, [&] { removeFrom(sequencer, animator); }},
                {1, [&] { sequencer.removeAll(); }},
                {8, [&] { chance(2) ? sequencer.pause() : sequencer.continue_(); }},
                {8, [&] { sequencer.rewind(); }},
                {8, [&] { sequencer.seek(someStart()); }},
                {4, [&] { sequencer.animate(); }},
                {4, [&] { sequencer.calculateFrames(); }},
                {40, [&] { sequencer.advance(); }}});
    }

    template <class Group>
    void removeFrom(Group& group, const std::shared_ptr<Animator>& animator) {
        if (isMember(group, animator) || (_plan.misuse && chance(30))) group.remove(animator);
    }
    template <class Group>
    bool isMember(Group& group, const std::shared_ptr<Animator>& animator) {
        const auto& members = Look::members(group);
        return std::find(members.begin(), members.end(), animator) != members.end();
    }

    std::string text(float value) {
        return value != value ? "nan" : std::to_string(std::bit_cast<std::uint32_t>(value));
    }
    std::string text(std::integral auto value) { return std::to_string(value); }
    std::string text(const std::shared_ptr<Animator>& animator) { return name(animator.get()); }
    template <class Members>
    requires requires(Members members) { members.front()->looped; }
    std::string text(const Members& members) {
        std::string result = "[";
        for (const auto& member : members) result += text(member) + " ";
        return result + "]";
    }
    std::string row(const auto&... fields) { return (std::string() + ... + (" " + text(fields))); }

    std::string counts() {
        std::string result = text(World::classCount() - _alive);
        for (auto& stack : _stacks) result += row(stack->getCount());
        for (auto& chain : _chains) result += row(chain->getCount(), chain->getCurrentIndex());
        for (auto& s : _sequencers) {
            result += row(s->getCount(), s->getCurrentCount(), s->getCurrentFrame(), s->getCurrentIndex());
        }
        return result;
    }
    void dump() {
        const auto note = [this](const char* kind, auto& object, const auto&... fields) {
            say(kind + row(Look::timer(object) != nullptr, fields...) + " of " + name(&object));
        };
        for (auto& a : _animators) {
            if (a) {
                note("animator", *a, Look::startFrame(*a), Look::frameCount(*a), Look::source(*a),
                     Look::value(*a), Look::destination(*a), Look::amount(*a), Look::frames(*a),
                     Look::step(*a), Look::interval(*a), static_cast<std::int64_t>(Look::type(*a)),
                     a->looped);
            }
        }
        for (auto& s : _stacks) note("stack", *s, s->getItems());
        for (auto& c : _chains) {
            note("chain", *c, Look::members(*c), Look::direction(*c), c->getCurrentItem());
        }
        for (auto& s : _sequencers) {
            note("sequencer", *s, Look::maxFrames(*s), Look::playing(*s), Look::suspended(*s));
            // Reading the order sorts the members, so the script reads it only sometimes.
            if (chance(5)) note("order", *s, Look::members(*s));
        }
        say(counts());
    }

    Plan _plan;
    std::mt19937_64 _random;
    std::int64_t _alive; // the number of animators before the script
    std::unordered_map<const void*, int> _names;
    int _nextName = 0, _depth = 0;
    int _calls = 0; // calls of callbacks in the present step
    std::vector<std::function<void()>> _cleanUps;
    std::vector<std::shared_ptr<Animator>> _animators;
    std::vector<std::shared_ptr<Stack>> _stacks;
    std::vector<std::shared_ptr<Chain>> _chains;
    std::vector<std::shared_ptr<Sequencer>> _sequencers;
};

} // namespace scripted

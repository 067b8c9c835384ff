// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/StateNumbers.hpp"

#include "platform/effects/lv2/UridMap.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <lv2/atom/util.h>
#include <lv2/state/state.h>
#include <string_view>

namespace platform::lv2 {
namespace {

constexpr int FloatDigits = 9, DoubleDigits = 17; // sufficient to restore every value exactly

template <class T>
T read(const void* body) {
    T value;
    std::memcpy(&value, body, sizeof value);
    return value;
}

// Adds the floating-point numbers in an atom, including nested atoms, to `numbers`, in order.
void collect(const void* body, std::uint32_t size, LV2_URID type, std::vector<StoredNumber>& numbers) {
    const Urids& urids = Urids::shared();
    if (type == urids.atomFloat && size == sizeof(float)) {
        numbers.push_back({read<float>(body), false});
    } else if (type == urids.atomDouble && size == sizeof(double)) {
        numbers.push_back({read<double>(body), true});
    } else if (type == urids.atomVector && size >= sizeof(LV2_Atom_Vector_Body)) {
        const auto head = read<LV2_Atom_Vector_Body>(body);
        if (head.child_size == 0) return;
        const auto* bytes = static_cast<const std::byte*>(body);
        for (std::uint32_t at = sizeof head; at + head.child_size <= size; at += head.child_size) {
            collect(bytes + at, head.child_size, head.child_type, numbers);
        }
    } else if (type == urids.atomTuple) {
        LV2_ATOM_TUPLE_BODY_FOREACH(body, size, atom) {
            collect(LV2_ATOM_BODY_CONST(atom), atom->size, atom->type, numbers);
        }
    } else if (type == urids.atomObject && size >= sizeof(LV2_Atom_Object_Body)) {
        LV2_ATOM_OBJECT_BODY_FOREACH(static_cast<const LV2_Atom_Object_Body*>(body), size, property) {
            collect(LV2_ATOM_BODY_CONST(&property->value), property->value.size, property->value.type,
                    numbers);
        }
    }
}

// The position of a quoted number in a text.
struct Literal {
    std::size_t begin, end; // exclude the quotes
    bool isDouble;
};

// Returns the position of the closing quote of the string whose opening quote is at `at`, or npos. Turtle
// quotes have one or three characters.
std::size_t closingQuote(std::string_view text, std::size_t at, std::string_view quote) {
    for (at += quote.size(); at < text.size(); ++at) {
        if (text[at] == '\\') {
            ++at;
        } else if (text.substr(at, quote.size()) == quote) {
            return at;
        }
    }
    return std::string_view::npos;
}

std::vector<Literal> literalsIn(std::string_view text) {
    std::vector<Literal> literals;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '<') { // a URI, which contains no quotes
            at = std::min(text.find('>', at), text.size());
        } else if (text[at] == '"') {
            const std::string_view quote = text.substr(at, 3) == R"(""")" ? R"(""")" : R"(")";
            const std::size_t end = closingQuote(text, at, quote);
            if (end == std::string_view::npos) return literals;
            const std::string_view type = text.substr(end + quote.size());
            const std::size_t begin = at + quote.size();
            if (type.starts_with("^^xsd:float")) literals.push_back({begin, end, false});
            if (type.starts_with("^^xsd:double")) literals.push_back({begin, end, true});
            at = end + quote.size() - 1;
        }
    }
    return literals;
}

// Returns whether `text`, which may have too few digits, can represent `number`.
bool mayBe(std::string_view text, const StoredNumber& number) {
    double written = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), written);
    return end.ec == std::errc() && std::abs(written - number.value) <= 1e-8 + 1e-6 * std::abs(number.value);
}

} // namespace

// The state interface of the substitute instance, and the store function that it passes to the plug-in.
struct StateRecording {
    StateRecorder& recorder;
    LV2_State_Store_Function store;
    LV2_State_Handle handle;

    static LV2_State_Status save(LV2_Handle self, LV2_State_Store_Function store, LV2_State_Handle handle,
                                 std::uint32_t flags, const LV2_Feature* const* features) {
        auto& recorder = *static_cast<StateRecorder*>(self);
        StateRecording recording{recorder, store, handle};
        recorder._mutex.unlock();
        const LV2_State_Status status =
            recorder._state->save(recorder._instance.lv2_handle, note, &recording, flags, features);
        recorder._mutex.lock();
        return status;
    }
    // lilv's `store` only adds to the state that is being created, so the mutex need not be locked for it.
    static LV2_State_Status note(LV2_State_Handle self, std::uint32_t key, const void* value,
                                 std::size_t size, std::uint32_t type, std::uint32_t flags) {
        auto& [recorder, store, handle] = *static_cast<StateRecording*>(self);
        const LV2_State_Status status = store(handle, key, value, size, type, flags);
        recorder._bytes += size;
        if (status == LV2_STATE_SUCCESS && value != nullptr) {
            auto& property = recorder._properties.emplace_back(StateRecorder::Property{key, {}});
            collect(value, static_cast<std::uint32_t>(size), type, property.numbers);
        }
        return status;
    }
};

StateRecorder::StateRecorder(LilvInstance& instance, std::mutex& mutex)
    : _instance(instance)
    , _mutex(mutex)
    , _state(static_cast<const LV2_State_Interface*>(
          lilv_instance_get_extension_data(&instance, LV2_STATE__interface)))
    , _descriptor(*instance.lv2_descriptor)
    , _replacement{&_descriptor, this, nullptr} {
    _descriptor.extension_data = nullptr;
    if (_state == nullptr) return;
    _descriptor.extension_data = [](const char* uri) -> const void* {
        static const LV2_State_Interface state{StateRecording::save, nullptr};
        return std::strcmp(uri, LV2_STATE__interface) == 0 ? &state : nullptr;
    };
}

std::vector<StoredNumber> StateRecorder::numbers() const {
    std::vector<const Property*> sorted;
    for (const Property& property : _properties) {
        sorted.push_back(&property);
    }
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Property* a, const Property* b) { return a->key < b->key; });
    std::vector<StoredNumber> all;
    for (const Property* property : sorted) {
        all.insert(all.end(), property->numbers.begin(), property->numbers.end());
    }
    return all;
}

std::string allDigits(const StoredNumber& number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number.value,
                                   std::chars_format::general, number.isDouble ? DoubleDigits : FloatDigits);
    std::string digits(text.data(), end.ptr);
    return digits.find_first_not_of("-0123456789") == std::string::npos ? digits + ".0" : digits;
}

std::string withAllDigits(const std::string& text, const std::vector<StoredNumber>& numbers) {
    const std::vector<Literal> literals = literalsIn(text);
    if (literals.size() != numbers.size()) return text;
    std::string result;
    std::size_t done = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto [begin, end, isDouble] = literals[i];
        if (isDouble != numbers[i].isDouble) return text;
        const std::string_view written = std::string_view(text).substr(begin, end - begin);
        result.append(text, done, begin - done);
        result += mayBe(written, numbers[i]) ? allDigits(numbers[i]) : std::string(written);
        done = end;
    }
    return result.append(text, done);
}

} // namespace platform::lv2

// SPDX-License-Identifier: MIT
// Value: what a dictionary or an array holds. Plain values all through (numbers, texts, boxed
// points, arrays and dictionaries are copied whole); the one exception is a status object, which is
// shared and says itself which threads may call it.

#pragma once

#include <gps/Dictionary.h>
#include <gps/GPSPoint.h>
#include <gps/Number.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace gps {

class GPSOutputReceiver;

class Value {
public:
    Value() noexcept = default; ///< none: what a key that is not there has
    Value(Number number) noexcept : held_(number) {}
    template <typename T>
    requires std::is_arithmetic_v<T> Value(T number)
    noexcept : held_(Number{number}) {}
    Value(std::string text) noexcept : held_(std::move(text)) {}
    Value(std::string_view text) : held_(std::string{text}) {}
    Value(const char* text) : held_(std::string{text}) {}
    Value(const GPSPoint& point) noexcept : held_(point) {}
    Value(Array array) noexcept;
    Value(Dictionary dictionary) noexcept;
    Value(std::shared_ptr<GPSOutputReceiver> status) noexcept : held_(std::move(status)) {}

    [[nodiscard]] bool isNone() const noexcept { return held_.index() == 0; }

    /// What the value holds if it is of that type, else null: T is Number, std::string, GPSPoint,
    /// Array, Dictionary or std::shared_ptr<GPSOutputReceiver>.
    template <typename T> [[nodiscard]] const T* as() const noexcept
    {
        return std::get_if<T>(&held_);
    }
    template <typename T> [[nodiscard]] T* as() noexcept { return std::get_if<T>(&held_); }

    /// Whether it is a number or a text. What is neither counts as missing where one is looked for.
    [[nodiscard]] bool hasReading() const noexcept
    {
        return as<Number>() != nullptr || as<std::string>() != nullptr;
    }

    /// Boolean and 32-bit integer readings of a number or a text; false and 0 for anything else.
    [[nodiscard]] bool boolReading() const noexcept;
    [[nodiscard]] std::int32_t int32Reading() const noexcept;

    /// Numbers by numeric value whatever their type, texts byte for byte, points bit for bit,
    /// arrays and dictionaries element by element, status objects by identity.
    friend bool operator==(const Value& a, const Value& b) noexcept;

private:
    friend class Dictionary;
    std::variant<std::monostate, Number, std::string, GPSPoint, Array, Dictionary,
                 std::shared_ptr<GPSOutputReceiver>>
        held_;
};

/// One key with its value.
struct DictionaryEntry {
    std::string key;
    Value value;
};

/// Walks the entries in order.
class Dictionary::Iterator {
public:
    using value_type = DictionaryEntry;
    using difference_type = std::ptrdiff_t;

    Iterator() noexcept = default;
    Iterator(const DictionaryEntry* at, const DictionaryEntry* end) noexcept : at_(at), end_(end)
    {
        skipRemoved();
    }

    const DictionaryEntry& operator*() const noexcept { return *at_; }
    const DictionaryEntry* operator->() const noexcept { return at_; }
    Iterator& operator++() noexcept
    {
        ++at_;
        skipRemoved();
        return *this;
    }
    Iterator operator++(int) noexcept
    {
        const Iterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const Iterator& a, const Iterator& b) noexcept { return a.at_ == b.at_; }

private:
    void skipRemoved() noexcept
    {
        while (at_ != end_ && at_->value.isNone())
            ++at_;
    }

    const DictionaryEntry* at_ = nullptr;
    const DictionaryEntry* end_ = nullptr;
};

/// The point boxed under "point"; null without one.
[[nodiscard]] const GPSPoint* findPoint(const Dictionary& record) noexcept;

/// A value as a person reads it in a log line.
[[nodiscard]] std::string describe(const Value& value);
[[nodiscard]] std::string describe(const Dictionary& dictionary);

} // namespace gps

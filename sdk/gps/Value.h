// SPDX-License-Identifier: MIT
// Value: an element of a dictionary or an array: a number, string, boxed point, array, dictionary
// or status object, or empty. A change of a value never shows in its copies, so each thread may
// hold its own [any]. Only a status object is shared; its class states which threads may call it.

#pragma once

#include <gps/CopyOnWrite.h>
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
    Value() noexcept = default; ///< an empty value
    Value(Number number) noexcept : held_(number) {}
    template <typename T>
    requires std::is_arithmetic_v<T> Value(T number)
    noexcept : held_(Number{number}) {}
    Value(std::string text) noexcept : held_(std::move(text)) {}
    Value(std::string_view text) : held_(std::string{text}) {}
    Value(const char* text) : held_(std::string{text}) {}
    Value(const GPSPoint& point) noexcept : held_(point) {}
    Value(Array array);
    Value(Dictionary dictionary);
    Value(std::shared_ptr<GPSOutputReceiver> status) noexcept : held_(std::move(status)) {}

    [[nodiscard]] bool isNone() const noexcept { return held_.index() == 0; } ///< whether empty

    /// The held object if it is a T, otherwise null. T is Number, std::string, GPSPoint, Array,
    /// Dictionary or std::shared_ptr<GPSOutputReceiver>. Copies of a value share an array or a
    /// dictionary until it is accessed for a change; that access copies its elements first.
    template <typename T> [[nodiscard]] const T* as() const noexcept
    {
        if constexpr (kIsShared<T>) {
            const auto* const shared = std::get_if<CopyOnWrite<T>>(&held_);
            return shared != nullptr ? shared->get() : nullptr;
        } else {
            return std::get_if<T>(&held_);
        }
    }
    template <typename T> [[nodiscard]] T* as()
    {
        if constexpr (kIsShared<T>) {
            auto* const shared = std::get_if<CopyOnWrite<T>>(&held_);
            return shared != nullptr ? shared->change() : nullptr;
        } else {
            return std::get_if<T>(&held_);
        }
    }

    /// Whether the value is a number or a string, the types that the readings below convert.
    [[nodiscard]] bool hasReading() const noexcept
    {
        return as<Number>() != nullptr || as<std::string>() != nullptr;
    }

    /// The value converted to a boolean or an integer, by the rules of Number for a number and of
    /// leadingBool() and leadingInt32() for a string; false or 0 for any other type.
    [[nodiscard]] bool boolReading() const noexcept;
    [[nodiscard]] std::int32_t int32Reading() const noexcept;

    /// Compares numbers by value regardless of type, strings by bytes, points by bits, arrays and
    /// dictionaries by elements, and status objects by identity.
    friend bool operator==(const Value& a, const Value& b) noexcept;

private:
    template <typename T> static constexpr bool kIsShared =
        std::is_same_v<T, Array> || std::is_same_v<T, Dictionary>;

    friend class Dictionary;
    std::variant<std::monostate, Number, std::string, GPSPoint, CopyOnWrite<Array>,
                 CopyOnWrite<Dictionary>, std::shared_ptr<GPSOutputReceiver>>
        held_;
};

/// One key with its value.
struct DictionaryEntry {
    std::string key;
    Value value;
};

/// A forward iterator over the entries in order.
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

/// The point under "point"; null if the record has none. [any]
[[nodiscard]] const GPSPoint* findPoint(const Dictionary& record) noexcept;

/// A value as readable text, for log lines. [any]
[[nodiscard]] std::string describe(const Value& value);
[[nodiscard]] std::string describe(const Dictionary& dictionary);

} // namespace gps

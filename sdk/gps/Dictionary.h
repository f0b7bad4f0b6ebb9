// SPDX-License-Identifier: MIT
// Dictionary: maps string keys to values and keeps the order in which the keys were set. Records,
// options and an error's user information are dictionaries. A plain value: a change never shows in
// a copy, so each thread may hold its own [any]. This header is enough to pass
// dictionaries on; include <gps/Value.h> to read or change their values.

#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace gps {

class Value;
struct DictionaryEntry;
using Array = std::vector<Value>;

/// A flat list that adds a hash index once it is large, so that five keys and a million keys are
/// both fast.
///
/// Setting a present key keeps its position; removing it and setting it again moves it to the end.
/// A dictionary never holds an empty value: setting one removes the key. Pointers and iterators
/// stay valid until the next change of the dictionary. One that allows changes is also no longer
/// to be used once the dictionary was copied: the copy would change as well.
///
/// Precondition of every change: keys and texts passed as views do not point into this dictionary.
class Dictionary {
public:
    class Iterator;

    Dictionary() noexcept;
    Dictionary(std::initializer_list<DictionaryEntry> entries);
    Dictionary(const Dictionary& other);
    Dictionary(Dictionary&& other) noexcept;
    /// Reuses this dictionary's storage. Precondition: `other` is not stored inside this one.
    Dictionary& operator=(const Dictionary& other);
    Dictionary& operator=(Dictionary&& other) noexcept;
    ~Dictionary();

    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    /// @return  the value under a key; null if the key is missing
    [[nodiscard]] const Value* find(std::string_view key) const noexcept;
    [[nodiscard]] Value* find(std::string_view key) noexcept;
    [[nodiscard]] bool contains(std::string_view key) const noexcept
    {
        return find(key) != nullptr;
    }

    /// @return  the string, dictionary or array under a key; null if the key is missing or its
    ///          value has another type
    [[nodiscard]] const std::string* findString(std::string_view key) const noexcept;
    [[nodiscard]] const Dictionary* findDictionary(std::string_view key) const noexcept;
    [[nodiscard]] const Array* findArray(std::string_view key) const noexcept;
    [[nodiscard]] Array* findArray(std::string_view key);

    void set(std::string_view key, Value value);

    /// The same for a string, but reuses the storage of the key's present value or of an entry that
    /// clear() left behind: a loop that clears and fills one dictionary soon allocates nothing.
    void setText(std::string_view key, std::string_view text);

    void remove(std::string_view key);
    void clear() noexcept; ///< keeps the storage for reuse

    /// Moves all values out, in order; the dictionary is empty afterwards.
    [[nodiscard]] std::vector<Value> takeValues();

    void reserve(std::size_t entries);

    [[nodiscard]] Iterator begin() const noexcept;
    [[nodiscard]] Iterator end() const noexcept;

    /// Equal if both have the same keys with equal values, in any order.
    friend bool operator==(const Dictionary& a, const Dictionary& b) noexcept;

private:
    struct Index;

    Value& slotFor(std::string_view key);
    [[nodiscard]] std::uint32_t hashOf(std::string_view key) const noexcept;
    [[nodiscard]] std::size_t positionOf(std::string_view key, std::uint32_t hash) const noexcept;
    Value& append(std::string_view key, std::uint32_t hash);
    void makeRoom();
    void buildIndex();

    // [0, used_) are in use, where a removed entry has an empty value; the rest is storage for
    // reuse. What an empty dictionary needs comes first, so that it is in one cache line.
    std::uint32_t used_ = 0;
    std::uint32_t refillable_ = 0; // how many of the first entries still have their own keys
    std::unique_ptr<Index> index_; // only in a large dictionary
    std::vector<DictionaryEntry> entries_;
};

} // namespace gps

// SPDX-License-Identifier: MIT
// Dictionary: string keys to values, in the order in which the keys were first set. Every record,
// option and user information is one. A plain value: a copy shares nothing with its original, so
// threads may each hold their own. This header suffices to pass dictionaries on; to look inside,
// include <gps/Value.h>.

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

/// A flat list that grows a hash index when it becomes large: five keys and a million are both
/// fast.
///
/// Setting a key again keeps its place; removing and setting again puts it last. No value is ever
/// none: setting one removes the key. Pointers and iterators hold until the next change of the
/// dictionary. Precondition of every change: keys and texts that are handed in as views do not lie
/// in this dictionary.
class Dictionary {
public:
    class Iterator;

    Dictionary() noexcept;
    Dictionary(std::initializer_list<DictionaryEntry> entries);
    Dictionary(const Dictionary& other);
    Dictionary(Dictionary&& other) noexcept;
    /// Reuses the storage that this dictionary has. Precondition: the other does not lie inside
    /// this one.
    Dictionary& operator=(const Dictionary& other);
    Dictionary& operator=(Dictionary&& other) noexcept;
    ~Dictionary();

    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    /// @return  the value under a key; null without one
    [[nodiscard]] const Value* find(std::string_view key) const noexcept;
    [[nodiscard]] Value* find(std::string_view key) noexcept;
    [[nodiscard]] bool contains(std::string_view key) const noexcept
    {
        return find(key) != nullptr;
    }

    /// The text, the dictionary or the array under a key; null when the key is missing or its value
    /// of another type.
    [[nodiscard]] const std::string* findString(std::string_view key) const noexcept;
    [[nodiscard]] const Dictionary* findDictionary(std::string_view key) const noexcept;
    [[nodiscard]] const Array* findArray(std::string_view key) const noexcept;
    [[nodiscard]] Array* findArray(std::string_view key) noexcept;

    void set(std::string_view key, Value value);

    /// As `set` with a string, but into the storage that the key, or an entry cleared before,
    /// already has: in a loop that clears and fills one dictionary again and again, nothing is
    /// allocated once it is warm.
    void setText(std::string_view key, std::string_view text);

    void remove(std::string_view key);
    void clear() noexcept; ///< keeps the storage

    /// Moves all values out, in order, and leaves the dictionary empty.
    [[nodiscard]] std::vector<Value> takeValues();

    void reserve(std::size_t entries);

    [[nodiscard]] Iterator begin() const noexcept;
    [[nodiscard]] Iterator end() const noexcept;

    /// The same keys with equal values; the order does not matter.
    friend bool operator==(const Dictionary& a, const Dictionary& b) noexcept;

private:
    struct Index;

    Value& slotFor(std::string_view key);
    [[nodiscard]] std::uint32_t hashOf(std::string_view key) const noexcept;
    [[nodiscard]] std::size_t positionOf(std::string_view key, std::uint32_t hash) const noexcept;
    Value& append(std::string_view key, std::uint32_t hash);
    Value& takeNext();
    void makeRoom();
    void buildIndex();

    std::vector<DictionaryEntry>
        entries_; // [0, used_): in use, removed ones none; behind: storage to reuse
    // Counts of 32 bits, as the index has them: a million records are a million dictionaries.
    std::uint32_t used_ = 0;
    std::uint32_t apart_ =
        0; // no two of so many keys from the front are equal, those behind used_ included
    std::unique_ptr<Index> index_; // only when large
};

} // namespace gps

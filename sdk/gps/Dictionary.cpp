// SPDX-License-Identifier: MIT
// Records have five to ten keys and are filled anew for every line of a file: a linear search and
// reused storage make that cheap. The index is for dictionaries of names, which may be huge.

#include <gps/Dictionary.h>
#include <gps/Value.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>
#include <variant>

namespace gps {
namespace {

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

/// Up to this size, a linear search is faster than hashing.
constexpr std::size_t kLargestWithoutIndex = 12;

/// Assigns a value; a string goes into the storage of the present one.
void assign(Value& to, const Value& from)
{
    auto* const present = to.as<std::string>();
    const auto* const text = from.as<std::string>();
    if (present != nullptr && text != nullptr)
        present->assign(*text);
    else
        to = from;
}

} // namespace

/// Open addressing with linear probing, at most half full. The slot of a removed entry is kept
/// until the next rebuild, because later probes must step over it.
struct Dictionary::Index {
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t position = kFree;
    };
    static constexpr std::uint32_t kFree = 0xFFFFFFFF;

    explicit Index(std::size_t entries)
    {
        std::size_t capacity = 32;
        while (capacity < entries * 4)
            capacity *= 2;
        slots.resize(capacity);
    }

    [[nodiscard]] bool hasRoomFor(std::size_t entries) const noexcept
    {
        return entries * 2 <= slots.size();
    }

    static std::uint32_t hashOf(std::string_view key) noexcept
    {
        return static_cast<std::uint32_t>(std::hash<std::string_view>{}(key));
    }

    void insert(std::uint32_t hash, std::size_t position) noexcept
    {
        std::size_t i = hash & (slots.size() - 1);
        while (slots[i].position != kFree)
            i = (i + 1) & (slots.size() - 1);
        slots[i] = {hash, static_cast<std::uint32_t>(position)};
    }

    std::vector<Slot> slots;
    std::uint32_t removed = 0; // entries whose value is empty
};

Dictionary::Dictionary() noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<DictionaryEntry> entries)
{
    reserve(entries.size());
    for (const auto& entry : entries)
        set(entry.key, entry.value);
}

Dictionary::Dictionary(const Dictionary& other)
{
    *this = other;
}

Dictionary::Dictionary(Dictionary&& other) noexcept
    : used_(std::exchange(other.used_, 0)), refillable_(std::exchange(other.refillable_, 0)),
      index_(std::move(other.index_)), entries_(std::move(other.entries_))
{
    other.entries_.clear();
}

Dictionary& Dictionary::operator=(const Dictionary& other)
{
    if (this == &other)
        return *this;
    clear();
    if (other.used_ == 0)
        return *this;
    reserve(other.size());
    for (const auto& [key, value] : other) {
        if (used_ == entries_.size()) {
            entries_.push_back({key, value});
        } else {
            auto& entry = entries_[used_];
            if (entry.key != key)
                entry.key = key;
            assign(entry.value, value);
        }
        ++used_;
    }
    refillable_ = 0;
    if (used_ > kLargestWithoutIndex)
        buildIndex();
    return *this;
}

Dictionary& Dictionary::operator=(Dictionary&& other) noexcept
{
    // `other` may be stored inside this dictionary: moved out first, it does not end up in itself.
    Dictionary taken{std::move(other)};
    std::swap(entries_, taken.entries_);
    std::swap(used_, taken.used_);
    std::swap(refillable_, taken.refillable_);
    std::swap(index_, taken.index_);
    return *this;
}

std::size_t Dictionary::size() const noexcept
{
    return used_ - (index_ ? index_->removed : 0);
}

const Value* Dictionary::find(std::string_view key) const noexcept
{
    const std::size_t position = positionOf(key, hashOf(key));
    return position == kNotFound ? nullptr : &entries_[position].value;
}

Value* Dictionary::find(std::string_view key) noexcept
{
    const std::size_t position = positionOf(key, hashOf(key));
    return position == kNotFound ? nullptr : &entries_[position].value;
}

const std::string* Dictionary::findString(std::string_view key) const noexcept
{
    const Value* value = find(key);
    return value != nullptr ? value->as<std::string>() : nullptr;
}

const Dictionary* Dictionary::findDictionary(std::string_view key) const noexcept
{
    const Value* value = find(key);
    return value != nullptr ? value->as<Dictionary>() : nullptr;
}

const Array* Dictionary::findArray(std::string_view key) const noexcept
{
    const Value* value = find(key);
    return value != nullptr ? value->as<Array>() : nullptr;
}

Array* Dictionary::findArray(std::string_view key)
{
    Value* value = find(key);
    return value != nullptr ? value->as<Array>() : nullptr;
}

void Dictionary::set(std::string_view key, Value value)
{
    if (value.isNone())
        remove(key);
    else
        slotFor(key) = std::move(value);
}

void Dictionary::setText(std::string_view key, std::string_view text)
{
    auto& held = slotFor(key).held_;
    if (auto* present = std::get_if<std::string>(&held))
        present->assign(text);
    else
        held.emplace<std::string>(text);
}

void Dictionary::remove(std::string_view key)
{
    const std::size_t position = positionOf(key, hashOf(key));
    if (position == kNotFound)
        return;
    if (index_) {
        ++index_->removed;
        entries_[position].value = Value{};
        return;
    }
    const auto at = entries_.begin() + static_cast<std::ptrdiff_t>(position);
    std::rotate(at, at + 1, entries_.begin() + static_cast<std::ptrdiff_t>(used_));
    --used_;
}

void Dictionary::clear() noexcept
{
    refillable_ = index_ ? 0 : used_;
    used_ = 0;
    index_.reset();
}

std::vector<Value> Dictionary::takeValues()
{
    std::vector<Value> values;
    values.reserve(size());
    for (std::size_t i = 0; i < used_; ++i) {
        if (!entries_[i].value.isNone())
            values.push_back(std::move(entries_[i].value));
    }
    clear();
    return values;
}

void Dictionary::reserve(std::size_t entries)
{
    entries_.reserve(entries);
}

Dictionary::Iterator Dictionary::begin() const noexcept
{
    return {entries_.data(), entries_.data() + used_};
}

Dictionary::Iterator Dictionary::end() const noexcept
{
    const DictionaryEntry* end = entries_.data() + used_;
    return {end, end};
}

bool operator==(const Dictionary& a, const Dictionary& b) noexcept
{
    if (a.size() != b.size())
        return false;
    return std::all_of(a.begin(), a.end(), [&b](const DictionaryEntry& entry) {
        const Value* other = b.find(entry.key);
        return other != nullptr && *other == entry.value;
    });
}

/// The value under a key, which is added if it is missing. An added value may still hold what an
/// entry held before clear().
Value& Dictionary::slotFor(std::string_view key)
{
    // Filled in the same order as before clear(): no other entry can have this key.
    if (used_ < refillable_ && entries_[used_].key == key)
        return entries_[used_++].value;
    const std::uint32_t hash = hashOf(key);
    const std::size_t position = positionOf(key, hash);
    return position == kNotFound ? append(key, hash) : entries_[position].value;
}

/// The key's hash if there is an index to use it.
std::uint32_t Dictionary::hashOf(std::string_view key) const noexcept
{
    return index_ ? Index::hashOf(key) : 0;
}

std::size_t Dictionary::positionOf(std::string_view key, std::uint32_t hash) const noexcept
{
    if (!index_) {
        for (std::size_t i = 0; i < used_; ++i) {
            if (entries_[i].key == key)
                return i;
        }
        return kNotFound;
    }
    const auto& slots = index_->slots;
    for (std::size_t i = hash & (slots.size() - 1); slots[i].position != Index::kFree;
         i = (i + 1) & (slots.size() - 1)) {
        const auto& entry = entries_[slots[i].position];
        if (slots[i].hash == hash && !entry.value.isNone() && entry.key == key)
            return slots[i].position;
    }
    return kNotFound;
}

Value& Dictionary::append(std::string_view key, std::uint32_t hash)
{
    if (index_ && !index_->hasRoomFor(used_ + 1))
        makeRoom();
    if (used_ == entries_.size())
        entries_.emplace_back();
    entries_[used_].key.assign(key);
    refillable_ = 0;
    Value& value = entries_[used_].value;
    if (value.isNone())
        value = std::string{}; // an empty value would mark the entry as removed
    ++used_;
    if (index_)
        index_->insert(hash, used_ - 1);
    else if (used_ > kLargestWithoutIndex)
        buildIndex();
    return value;
}

/// Makes room in the index: drops removed entries and rebuilds it, or doubles it if there are none.
void Dictionary::makeRoom()
{
    if (index_->removed == 0) {
        Index larger{used_};
        for (const auto& slot : index_->slots) {
            if (slot.position != Index::kFree)
                larger.insert(slot.hash, slot.position);
        }
        *index_ = std::move(larger);
        return;
    }
    const auto used = entries_.begin() + static_cast<std::ptrdiff_t>(used_);
    const auto live = std::remove_if(entries_.begin(), used,
                                     [](const DictionaryEntry& e) { return e.value.isNone(); });
    used_ = static_cast<std::uint32_t>(live - entries_.begin());
    buildIndex();
}

void Dictionary::buildIndex()
{
    index_ = std::make_unique<Index>(used_);
    for (std::size_t i = 0; i < used_; ++i) {
        if (!entries_[i].value.isNone())
            index_->insert(Index::hashOf(entries_[i].key), i);
    }
}

} // namespace gps

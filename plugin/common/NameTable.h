// SPDX-License-Identifier: MIT
// NameTable: assigns each distinct name an index in order of first appearance. The readers use it
// to keep one record per name of a file with possibly 100,000 of them; there it is measurably
// faster than an unordered_map, since it stores views and allocates nothing per name. Not
// thread-safe. [any]

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace magellan {

class NameTable {
public:
    NameTable();

    /// Returns the index of a name. The first name gets 0, each new one the next index.
    /// Precondition: the text behind the view outlives the table, and there are fewer than 2^32
    /// names of less than 4 GiB each.
    [[nodiscard]] std::size_t indexOf(std::string_view name);

    /// Returns the index of a name; nullopt if indexOf() never got it.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const;

    /// Returns the name of an index. Precondition: `index` is below size().
    [[nodiscard]] std::string_view at(std::size_t index) const
    {
        return {names_[index].text, names_[index].length};
    }

    [[nodiscard]] std::size_t size() const noexcept { return names_.size(); }

private:
    struct Name {
        const char* text;
        std::uint32_t length;
        std::uint32_t hash;

        explicit Name(std::string_view name) noexcept;
        bool operator==(const Name& other) const noexcept;
    };

    [[nodiscard]] std::size_t slotFor(const Name& name) const;
    void grow();

    std::vector<Name> names_;

    // A hash table of indices into names_. Four bytes per slot keep it in the cache.
    std::vector<std::uint32_t> slots_;
};

} // namespace magellan

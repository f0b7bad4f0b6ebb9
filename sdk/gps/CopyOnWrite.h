// SPDX-License-Identifier: MIT
// CopyOnWrite: a value whose copies share one object until one of them is changed. Value keeps its
// arrays and dictionaries in it, so that copying a million records costs neither time nor memory.
// Each thread may hold its own copy [any].

#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace gps {

/// Precondition of copying: nobody changes the object through a pointer that change() returned
/// before the copy was made, because the copy would change as well.
template <typename T> class CopyOnWrite {
public:
    explicit CopyOnWrite(T value) : shared_(new Shared{std::move(value)}) {}
    CopyOnWrite(const CopyOnWrite& other) noexcept : shared_(other.shared_)
    {
        if (shared_ != nullptr)
            shared_->owners.fetch_add(1, std::memory_order_relaxed);
    }
    CopyOnWrite(CopyOnWrite&& other) noexcept : shared_(std::exchange(other.shared_, nullptr)) {}
    CopyOnWrite& operator=(CopyOnWrite other) noexcept
    {
        std::swap(shared_, other.shared_);
        return *this;
    }
    ~CopyOnWrite()
    {
        if (shared_ != nullptr && shared_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete shared_;
    }

    /// The object; null if it was moved out.
    [[nodiscard]] const T* get() const noexcept
    {
        return shared_ != nullptr ? &shared_->value : nullptr;
    }

    /// The object for a change that no other copy will see; null if it was moved out.
    [[nodiscard]] T* change()
    {
        // Acquire: the last other owner may have read the object on its thread until just now.
        if (shared_ != nullptr && shared_->owners.load(std::memory_order_acquire) != 1)
            *this = CopyOnWrite{shared_->value};
        return shared_ != nullptr ? &shared_->value : nullptr;
    }

    friend bool operator==(const CopyOnWrite& a, const CopyOnWrite& b) noexcept
    {
        return a.shared_ == b.shared_ || (a.shared_ != nullptr && b.shared_ != nullptr &&
                                          a.shared_->value == b.shared_->value);
    }

private:
    struct Shared {
        [[no_unique_address]] T value; // may leave room at its end for the number
        std::atomic<std::uint32_t> owners{1};
    };

    Shared* shared_;
};

} // namespace gps

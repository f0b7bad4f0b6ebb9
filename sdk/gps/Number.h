// SPDX-License-Identifier: MIT
// Number: a number that remembers the numeric type it was created from. A plain value: each thread
// may hold its own [any].

#pragma once

#include <cstdint>
#include <string>

namespace gps {

/// The numeric types that a Number can be created from; the codes are part of the interface.
enum class NumberType : std::int32_t {
    kBool = 0,
    kInt8 = 1,
    kInt16 = 2,
    kInt32 = 3,
    kInt64 = 4,
    kFloat32 = 5,
    kFloat64 = 6,
};

class Number {
public:
    Number(bool value) noexcept : type_(NumberType::kBool), integer_(value ? 1 : 0) {}
    Number(std::int8_t value) noexcept : type_(NumberType::kInt8), integer_(value) {}
    Number(std::int16_t value) noexcept : type_(NumberType::kInt16), integer_(value) {}
    Number(std::int32_t value) noexcept : type_(NumberType::kInt32), integer_(value) {}
    Number(std::int64_t value) noexcept : type_(NumberType::kInt64), integer_(value) {}
    Number(float value) noexcept : type_(NumberType::kFloat32), real_(value) {}
    Number(double value) noexcept : type_(NumberType::kFloat64), real_(value) {}

    /// Reads a number of the given type from the bytes at `value`, which need not be aligned.
    ///
    /// Precondition: all bytes of the type are readable, and the type is one of the enumerators.
    [[nodiscard]] static Number fromBytes(NumberType type, const void* value) noexcept;

    [[nodiscard]] NumberType type() const noexcept { return type_; }
    [[nodiscard]] bool isFloating() const noexcept { return type_ >= NumberType::kFloat32; }

    [[nodiscard]] bool boolValue() const noexcept; ///< whether it is not 0
    /// The number truncated toward zero and saturated at the bounds; 0 for NaN.
    [[nodiscard]] std::int32_t int32Value() const noexcept;
    [[nodiscard]] std::int64_t int64Value() const noexcept; ///< likewise
    [[nodiscard]] double doubleValue() const noexcept;

    /// Decimal digits for integers and booleans; for floating-point numbers, the shortest text that
    /// reads back to the same number.
    [[nodiscard]] std::string text() const;

    /// Compares numeric values of any types: 1, 1.0 and true are equal. Two NaNs are equal, so that
    /// every number equals its copy.
    friend bool operator==(const Number& a, const Number& b) noexcept;

private:
    NumberType type_;
    union {
        std::int64_t integer_;
        double real_;
    };
};

} // namespace gps

// SPDX-License-Identifier: MIT
// Number: a number that remembers the numeric type it was made of. A plain value: any thread may
// hold its own.

#pragma once

#include <cstdint>
#include <string>

namespace gps {

/// The numeric types that a Number can be made of; the codes are part of the interface.
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

    /// A number of the given type, built from the bytes at `value` (no alignment needed).
    /// Precondition: as many bytes as the type has are readable there, and the type is one of the
    /// enumerators.
    [[nodiscard]] static Number fromBytes(NumberType type, const void* value) noexcept;

    [[nodiscard]] NumberType type() const noexcept { return type_; }
    [[nodiscard]] bool isFloating() const noexcept { return type_ >= NumberType::kFloat32; }

    [[nodiscard]] bool boolValue() const noexcept; ///< whether it is not 0
    [[nodiscard]] std::int32_t
    int32Value() const noexcept; ///< truncated toward zero, saturated; NaN gives 0
    [[nodiscard]] std::int64_t
    int64Value() const noexcept; ///< truncated toward zero, saturated; NaN gives 0
    [[nodiscard]] double doubleValue() const noexcept;

    /// Decimal digits for the whole types and bool, the shortest form that reads back for the
    /// floating ones.
    [[nodiscard]] std::string text() const;

    /// By numeric value, whatever the types: 1, 1.0 and true are equal. A NaN equals a NaN, so that
    /// every value equals its copy.
    friend bool operator==(const Number& a, const Number& b) noexcept;

private:
    NumberType type_;
    union {
        std::int64_t integer_;
        double real_;
    };
};

} // namespace gps

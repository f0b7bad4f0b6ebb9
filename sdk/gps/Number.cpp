// SPDX-License-Identifier: MIT
// Conversions saturate instead of being undefined, because devices and hosts send any value.

#include <gps/Number.h>
#include <gps/NumberText.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace gps {
namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;

template <typename T> Number read(const void* bytes) noexcept
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return Number{value};
}

/// Compares exactly: an integer beyond 2^53 does not equal the double that it would be rounded to.
bool equal(std::int64_t integer, double real) noexcept
{
    return real >= -kTwoTo63 && real < kTwoTo63 && std::trunc(real) == real &&
           static_cast<std::int64_t>(real) == integer;
}

} // namespace

Number Number::fromBytes(NumberType type, const void* value) noexcept
{
    switch (type) {
    case NumberType::kBool:
        // Any byte except 0 is true. Reading a byte of 2 as a bool would be undefined.
        return Number{read<std::int8_t>(value).boolValue()};
    case NumberType::kInt8:
        return read<std::int8_t>(value);
    case NumberType::kInt16:
        return read<std::int16_t>(value);
    case NumberType::kInt32:
        return read<std::int32_t>(value);
    case NumberType::kInt64:
        return read<std::int64_t>(value);
    case NumberType::kFloat32:
        return read<float>(value);
    case NumberType::kFloat64:
        break;
    }
    return read<double>(value);
}

bool Number::boolValue() const noexcept
{
    return isFloating() ? real_ != 0 : integer_ != 0;
}

std::int32_t Number::int32Value() const noexcept
{
    return isFloating() ? saturatedInt32(real_) : saturatedInt32(integer_);
}

std::int64_t Number::int64Value() const noexcept
{
    if (!isFloating())
        return integer_;
    if (std::isnan(real_))
        return 0;
    if (real_ < -kTwoTo63)
        return std::numeric_limits<std::int64_t>::min();
    if (real_ >= kTwoTo63)
        return std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(real_);
}

double Number::doubleValue() const noexcept
{
    return isFloating() ? real_ : static_cast<double>(integer_);
}

std::string Number::text() const
{
    std::string out;
    if (isFloating())
        appendShortest(out, real_);
    else
        appendInteger(out, integer_);
    return out;
}

bool operator==(const Number& a, const Number& b) noexcept
{
    if (a.isFloating() && b.isFloating())
        return a.real_ == b.real_ || (std::isnan(a.real_) && std::isnan(b.real_));
    if (a.isFloating())
        return equal(b.integer_, a.real_);
    if (b.isFloating())
        return equal(a.integer_, b.real_);
    return a.integer_ == b.integer_;
}

} // namespace gps

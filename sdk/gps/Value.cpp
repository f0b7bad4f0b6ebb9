// SPDX-License-Identifier: MIT
// describe() writes strings without escapes: the log replaces control characters itself.

#include <gps/NumberText.h>
#include <gps/Value.h>

namespace gps {
namespace {

void appendDescription(std::string& out, const Value& value);

void appendDescription(std::string& out, const Dictionary& dictionary)
{
    out += '{';
    for (const auto& [key, value] : dictionary) {
        if (out.back() != '{')
            out += ", ";
        out += key;
        out += " = ";
        appendDescription(out, value);
    }
    out += '}';
}

void appendDescription(std::string& out, const GPSPoint& point)
{
    out += '(';
    for (const double part : {point.latitude, point.longitude, point.altitude}) {
        appendShortest(out, part);
        out += ", ";
    }
    appendInteger(out, point.time);
    out += ", ";
    appendInteger(out, point.reserved);
    out += ')';
}

void appendDescription(std::string& out, const Array& array)
{
    out += '[';
    for (const auto& element : array) {
        if (out.back() != '[')
            out += ", ";
        appendDescription(out, element);
    }
    out += ']';
}

void appendDescription(std::string& out, const Value& value)
{
    if (const auto* number = value.as<Number>())
        out += number->text();
    else if (const auto* text = value.as<std::string>())
        out.append(1, '"').append(*text).append(1, '"');
    else if (const auto* point = value.as<GPSPoint>())
        appendDescription(out, *point);
    else if (const auto* array = value.as<Array>())
        appendDescription(out, *array);
    else if (const auto* dictionary = value.as<Dictionary>())
        appendDescription(out, *dictionary);
    else
        out += value.isNone() ? "(null)" : "(status object)";
}

} // namespace

Value::Value(Array array) : held_(CopyOnWrite{std::move(array)}) {}
Value::Value(Dictionary dictionary) : held_(CopyOnWrite{std::move(dictionary)}) {}

bool Value::boolReading() const noexcept
{
    if (const auto* number = as<Number>())
        return number->boolValue();
    const auto* text = as<std::string>();
    return text != nullptr && leadingBool(*text);
}

std::int32_t Value::int32Reading() const noexcept
{
    if (const auto* number = as<Number>())
        return number->int32Value();
    const auto* text = as<std::string>();
    return text != nullptr ? leadingInt32(*text) : 0;
}

bool operator==(const Value& a, const Value& b) noexcept
{
    return a.held_ == b.held_;
}

const GPSPoint* findPoint(const Dictionary& record) noexcept
{
    const Value* value = record.find(kPointKey);
    return value != nullptr ? value->as<GPSPoint>() : nullptr;
}

std::string describe(const Value& value)
{
    std::string out;
    appendDescription(out, value);
    return out;
}

std::string describe(const Dictionary& dictionary)
{
    std::string out;
    appendDescription(out, dictionary);
    return out;
}

} // namespace gps

// SPDX-License-Identifier: MIT
// Writing is done by hand, because event lines and track points come by the hundred thousand; the
// JSON library escapes only the rare text that needs it. Reading is left to the library.

#include "host/base/JsonText.h"

#include <gps/NumberText.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace host {
namespace {

constexpr int kDeepest = 64; // bounds the recursion of dictionaryOf

void appendReal(std::string& out, double value)
{
    if (std::isfinite(value))
        gps::appendShortest(out, value);
    else
        out += "null";
}

void appendNumber(std::string& out, const gps::Number& number)
{
    if (number.type() == gps::NumberType::kBool)
        out += number.boolValue() ? "true" : "false";
    else if (number.isFloating() && !std::isfinite(number.doubleValue()))
        out += "null";
    else
        out += number.text();
}

bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; });
}

using Json = nlohmann::ordered_json;

gps::Value valueOf(const Json& json);

gps::Dictionary dictionaryOf(const Json& object)
{
    gps::Dictionary dictionary;
    for (const auto& [key, value] : object.items())
        dictionary.set(key, valueOf(value));
    return dictionary;
}

gps::Value valueOf(const Json& json)
{
    if (json.is_boolean())
        return json.get<bool>();
    if (json.is_number_unsigned()) // may exceed the largest integer that a record can hold
        return static_cast<std::int64_t>(std::min<std::uint64_t>(
            json.get<std::uint64_t>(), std::numeric_limits<std::int64_t>::max()));
    if (json.is_number_integer())
        return json.get<std::int64_t>();
    if (json.is_number())
        return json.get<double>();
    if (json.is_string())
        return json.get<std::string>();
    if (json.is_object())
        return dictionaryOf(json);
    if (!json.is_array())
        return {};
    gps::Array array;
    for (const auto& element : json)
        array.push_back(valueOf(element));
    return array;
}

} // namespace

void appendJson(std::string& out, std::string_view text)
{
    if (isPlain(text))
        out.append(1, '"').append(text).append(1, '"');
    else
        out += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

void appendJson(std::string& out, const gps::GPSPoint& point)
{
    out += R"({"latitude":)";
    appendReal(out, point.latitude);
    out += R"(,"longitude":)";
    appendReal(out, point.longitude);
    out += R"(,"altitude":)";
    appendReal(out, point.altitude);
    out += R"(,"time":)";
    gps::appendInteger(out, point.time);
    out += R"(,"reserved":)";
    gps::appendInteger(out, point.reserved);
    out += '}';
}

void appendJsonKey(std::string& out, std::string_view key)
{
    if (out.back() != '{')
        out += ',';
    appendJson(out, key);
    out += ':';
}

void appendJson(std::string& out, const gps::Dictionary& record)
{
    out += '{';
    for (const auto& [key, value] : record) {
        appendJsonKey(out, key);
        appendJsonValue(out, value);
    }
    out += '}';
}

void appendJsonValue(std::string& out, const gps::Value& value)
{
    if (const auto* number = value.as<gps::Number>()) {
        appendNumber(out, *number);
    } else if (const auto* text = value.as<std::string>()) {
        appendJson(out, *text);
    } else if (const auto* point = value.as<gps::GPSPoint>()) {
        appendJson(out, *point);
    } else if (const auto* dictionary = value.as<gps::Dictionary>()) {
        appendJson(out, *dictionary);
    } else if (const auto* array = value.as<gps::Array>()) {
        out += '[';
        for (const auto& element : *array) {
            if (&element != array->data())
                out += ',';
            appendJsonValue(out, element);
        }
        out += ']';
    } else {
        out += "null";
    }
}

void appendJson(std::string& out, const gps::Error& error)
{
    out += R"({"domain":)";
    appendJson(out, error.domain());
    out += R"(,"code":)";
    gps::appendInteger(out, error.code());
    out += R"(,"description":)";
    appendJsonOrNull(out, error.description());
    out += R"(,"suggestion":)";
    appendJsonOrNull(out, error.suggestion());
    out += R"(,"path":)";
    appendJsonOrNull(out, error.path());
    out += '}';
}

void appendJsonOrNull(std::string& out, const std::optional<std::string>& text)
{
    if (text)
        appendJson(out, *text);
    else
        out += "null";
}

std::optional<std::size_t> jsonErrorOffset(std::string_view text)
{
    const auto keepNothing = [](int, Json::parse_event_t, const Json&) { return false; };
    try {
        [[maybe_unused]] const auto nothing = Json::parse(text.begin(), text.end(), keepNothing);
    } catch (const Json::parse_error& error) {
        return std::clamp<std::size_t>(error.byte, 1, text.size() + 1) -
               1; // the library counts from 1
    } catch (const Json::exception&) {
        return std::nullopt; // valid JSON, but a number is out of range
    }
    return std::nullopt;
}

std::optional<gps::Dictionary> readJsonObject(std::string_view text)
{
    bool tooDeep = false;
    const auto watchDepth = [&](int depth, Json::parse_event_t, const Json&) {
        tooDeep = tooDeep || depth > kDeepest;
        return !tooDeep;
    };
    const auto json = Json::parse(text.begin(), text.end(), watchDepth, false);
    if (tooDeep || !json.is_object())
        return std::nullopt;
    return dictionaryOf(json);
}

} // namespace host

// SPDX-License-Identifier: MIT
// Writing is done by hand, because event lines and track points come by the hundred thousand; the
// JSON library escapes only the rare text that needs it. Reading is left to the library.

#include "host/base/JsonText.h"

#include "host/base/JsonDocument.h"
#include "host/base/Text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <set>
#include <utility>
#include <vector>

namespace host {
namespace {

constexpr std::size_t kDeepest = 64; // bounds the recursion of whoever walks the result

char* putReal(char* at, double value)
{
    return std::isfinite(value) ? gps::putShortest(at, value) : put(at, "null");
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

// Bytes of 0x80 and above fail one of the first two comparisons, whether char has a sign or not.
bool isPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c >= 0x20 && c < 0x7F && c != '"' && c != '\\'; });
}

// Builds a dictionary while the text is parsed, so that the time and the memory grow with the text
// alone. (The library's own ordered objects look through all keys for each new one.)
class DictionaryBuilder final : public nlohmann::json_sax<Json> {
public:
    [[nodiscard]] std::optional<gps::Dictionary> takeObject()
    {
        auto* const object = root_.as<gps::Dictionary>();
        return object != nullptr ? std::optional{std::move(*object)} : std::nullopt;
    }

    // A dictionary drops a key that is set to nothing, so a null member is left out.
    bool null() override
    {
        if (!levels_.empty() && levels_.back().value.as<gps::Dictionary>() != nullptr)
            levels_.back().nullKeys.insert(levels_.back().key);
        return add({});
    }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(std::int64_t value) override { return add(value); }
    bool number_unsigned(std::uint64_t value) override
    {
        // The value may exceed the largest integer that a record can hold.
        return add(static_cast<std::int64_t>(
            std::min<std::uint64_t>(value, std::numeric_limits<std::int64_t>::max())));
    }
    bool number_float(double value, const std::string& /*text*/) override { return add(value); }
    bool string(std::string& value) override { return add(std::move(value)); }
    bool binary(Json::binary_t& /*value*/) override { return false; } // does not occur in JSON
    bool start_object(std::size_t /*size*/) override { return open(gps::Dictionary{}); }
    bool key(std::string& name) override
    {
        auto& level = levels_.back();
        level.key = std::move(name);
        hasRepeatedKey_ = level.value.as<gps::Dictionary>()->contains(level.key) ||
                          level.nullKeys.contains(level.key);
        return !hasRepeatedKey_;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*size*/) override { return open(gps::Array{}); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t offset, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*failure*/) override
    {
        errorAt_ = offset;
        return false;
    }

    /// How many bytes had been read when the parser met an error; nullopt if it met none.
    [[nodiscard]] std::optional<std::size_t> errorAt() const noexcept { return errorAt_; }

    /// The key at which the parser was stopped, because its object had it already; null if it was
    /// not.
    [[nodiscard]] const std::string* repeatedKey() const noexcept
    {
        return hasRepeatedKey_ ? &levels_.back().key : nullptr;
    }

private:
    // An object or array that has not ended.
    struct Level {
        gps::Value value;
        std::string key{};                // of the next member
        std::set<std::string> nullKeys{}; // which the dictionary lacks
    };

    bool open(gps::Value container)
    {
        levels_.push_back({std::move(container)});
        return levels_.size() <= kDeepest;
    }

    bool close()
    {
        auto value = std::move(levels_.back().value);
        levels_.pop_back();
        return add(std::move(value));
    }

    bool add(gps::Value value)
    {
        if (levels_.empty()) {
            root_ = std::move(value);
            return true;
        }
        auto& level = levels_.back();
        if (auto* const array = level.value.as<gps::Array>())
            array->push_back(std::move(value));
        else
            level.value.as<gps::Dictionary>()->set(level.key, std::move(value));
        return true;
    }

    std::vector<Level> levels_;
    gps::Value root_;
    std::optional<std::size_t> errorAt_;
    bool hasRepeatedKey_ = false;
};

// Shows how far the parser has read, which it does not say itself.
class WatchedIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    WatchedIterator(const char* at, const char** farthest) : at_(at), farthest_(farthest) {}

    reference operator*() const { return *at_; }
    WatchedIterator& operator++()
    {
        *farthest_ = ++at_;
        return *this;
    }
    friend bool operator==(const WatchedIterator& a, const WatchedIterator& b)
    {
        return a.at_ == b.at_;
    }
    friend bool operator!=(const WatchedIterator& a, const WatchedIterator& b) { return !(a == b); }

private:
    const char* at_;
    const char** farthest_;
};

} // namespace

void appendJson(std::string& out, std::string_view text)
{
    if (isPlain(text))
        out.append(1, '"').append(text).append(1, '"');
    else
        out += Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

char* putJson(char* at, const gps::GPSPoint& point)
{
    at = putReal(put(at, R"({"latitude":)"), point.latitude);
    at = putReal(put(at, R"(,"longitude":)"), point.longitude);
    at = putReal(put(at, R"(,"altitude":)"), point.altitude);
    at = gps::putInteger(put(at, R"(,"time":)"), point.time);
    at = gps::putInteger(put(at, R"(,"reserved":)"), point.reserved);
    return put(at, "}");
}

void appendJson(std::string& out, const gps::GPSPoint& point)
{
    appendPut<kMostOfJsonPoint>(out, [&](char* at) { return putJson(at, point); });
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
    DictionaryBuilder builder;
    (void)Json::sax_parse(text.begin(), text.end(), &builder);
    if (const auto at = builder.errorAt())
        return std::clamp<std::size_t>(*at, 1, text.size() + 1) - 1; // the library counts from 1
    return std::nullopt;
}

std::optional<RepeatedKey> repeatedJsonKey(std::string_view text)
{
    DictionaryBuilder builder;
    const char* farthest = text.data();
    (void)Json::sax_parse(WatchedIterator{text.data(), &farthest},
                          WatchedIterator{text.data() + text.size(), &farthest}, &builder);
    const auto* const key = builder.repeatedKey();
    if (key == nullptr)
        return std::nullopt;
    return RepeatedKey{*key, static_cast<std::size_t>(farthest - text.data())};
}

std::optional<gps::Dictionary> readJsonObject(std::string_view text)
{
    DictionaryBuilder builder;
    if (!Json::sax_parse(text.begin(), text.end(), &builder))
        return std::nullopt;
    return builder.takeObject();
}

} // namespace host

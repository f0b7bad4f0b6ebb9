// SPDX-License-Identifier: MIT
// Exported functions keep the types and names of a C interface; plugin/exports.map lists them.

#include <gps/DictionaryHelpers.h>
#include <gps/Value.h>
#include <platform/OrvUtils/OrvDebug.h>
#include <platform/System/Ascii.h>
#include <platform/System/TimeZone.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace {

void replace(gps::Dictionary* dictionary, const char* key, gps::Value value)
{
    if (dictionary == nullptr)
        return;
    const std::string name = key; // it may be part of the entry that goes
    dictionary->remove(name);
    dictionary->set(name, std::move(value));
}

/// Every Latin-1 byte is the Unicode character with the same number.
std::string utf8FromLatin1(std::string_view text)
{
    std::string utf8;
    utf8.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 128) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

/// The number or text under a key. A value of another type counts as missing.
const gps::Value* findReadable(const gps::Dictionary* dictionary, const char* key)
{
    const auto* value = dictionary != nullptr ? dictionary->find(key) : nullptr;
    return value != nullptr && value->hasReading() ? value : nullptr;
}

bool isValidIndex(std::int32_t index, std::int32_t lastIndex) noexcept
{
    return index >= 0 && index <= lastIndex;
}

} // namespace

std::int32_t GarminDebugLevel = 0;

void GarminSetDebugLevel(std::int32_t level)
{
    GarminDebugLevel = level;
    gps::OrvSetDebugLevel(level);
}

bool DebugLevelIs(std::int32_t level)
{
    return gps::OrvDebugLevelIs(level);
}

void SetDebugLevelFromDictionary(const gps::Dictionary* dictionary)
{
    if (dictionary == nullptr)
        return;
    const auto* value = findReadable(dictionary, "debug");
    const std::int32_t level = value != nullptr ? value->int32Reading() : 0;
    GarminSetDebugLevel(value != nullptr && level == 0 ? 1 : level);
}

bool GetBoolValueForKey(const gps::Dictionary* dictionary, const char* key, bool defaultValue)
{
    const auto* value = findReadable(dictionary, key);
    return value != nullptr ? value->boolReading() : defaultValue;
}

std::int32_t GetIntValueForKey(const gps::Dictionary* dictionary, const char* key,
                               std::int32_t defaultValue)
{
    const auto* value = findReadable(dictionary, key);
    return value != nullptr ? value->int32Reading() : defaultValue;
}

void SetFloatInDictionary(gps::Dictionary* dictionary, const char* key, float value)
{
    replace(dictionary, key, value);
}

void SetIntInDictionary(gps::Dictionary* dictionary, const char* key, std::int32_t value)
{
    replace(dictionary, key, value);
}

void SetNumberInDictionary(gps::Dictionary* dictionary, const char* key, gps::NumberType type,
                           const void* value)
{
    if (dictionary != nullptr && type >= gps::NumberType::kBool &&
        type <= gps::NumberType::kFloat64)
        replace(dictionary, key, gps::Number::fromBytes(type, value));
}

void SetCStringInDictionary(gps::Dictionary* dictionary, const char* key, const char* text)
{
    if (dictionary != nullptr && gps::isAscii(text))
        replace(dictionary, key, text);
}

void SetCStringInDictionaryIfNotEmpty(gps::Dictionary* dictionary, const char* key,
                                      const char* text)
{
    if (dictionary != nullptr && *text != '\0')
        SetCStringInDictionary(dictionary, key, text);
}

void SetLatin1CStringInDictionary(gps::Dictionary* dictionary, const char* key, const char* text)
{
    if (dictionary != nullptr)
        replace(dictionary, key, utf8FromLatin1(text));
}

void SetLatin1CStringInDictionaryIfNotEmpty(gps::Dictionary* dictionary, const char* key,
                                            const char* text)
{
    if (dictionary != nullptr && *text != '\0')
        SetLatin1CStringInDictionary(dictionary, key, text);
}

void SetStringInDictionaryFromCStringList(gps::Dictionary* dictionary, const char* key,
                                          const char* const* list, std::int32_t lastIndex,
                                          std::int32_t index)
{
    if (dictionary != nullptr && isValidIndex(index, lastIndex))
        SetCStringInDictionary(dictionary, key, list[index]);
}

void SetStringInDictionaryFromCFStringList(gps::Dictionary* dictionary, const char* key,
                                           const std::string* list, std::int32_t lastIndex,
                                           std::int32_t index)
{
    if (dictionary != nullptr && isValidIndex(index, lastIndex))
        replace(dictionary, key, list[index]);
}

void SetGPSPointInDictionary(gps::Dictionary* dictionary, const char* key, gps::GPSPoint point)
{
    if (dictionary != nullptr)
        dictionary->set(std::string{key}, point);
}

std::int32_t GetGMTOffsetFromTimeZoneName(const char* name)
{
    return GetGMTOffsetFromTimeZoneNameWithUnixTime(name, gps::unixTimeNow());
}

std::int32_t GetGMTOffsetFromTimeZoneNameWithUnixTime(const char* name, std::int64_t unixTime)
{
    return name != nullptr ? gps::secondsFromGMT(name, unixTime).value_or(0) : 0;
}

// SPDX-License-Identifier: MIT
// Helpers for dictionaries, the debug level and time zones. A plug-in's module exports them under
// exactly these names: a host that loads it looks them up there, by the types declared here. With a
// null dictionary every setter does nothing and every getter returns its default. Keys and texts
// may be parts of the dictionary that they are for. [any], with a dictionary that no other thread
// uses. The debug level is a plain global that the host thread sets before any worker starts.

#pragma once

#include <gps/Number.h>

#include <cstdint>
#include <string>

namespace gps {
class Dictionary;
struct GPSPoint;
} // namespace gps

#pragma GCC visibility push(default)
extern "C" {

/// The plug-in's own copy of the debug level, initially 0.
extern std::int32_t GarminDebugLevel;

/// Sets the debug level here and in the framework.
void GarminSetDebugLevel(std::int32_t level);

/// Whether the framework debugs at a level. GarminDebugLevel is not considered.
bool DebugLevelIs(std::int32_t level);

/// Sets the debug level from "debug". A missing "debug" sets it to 0; a "debug" of 0 sets it to 1,
/// since its mere presence switches debugging on. A null dictionary changes nothing.
void SetDebugLevelFromDictionary(const gps::Dictionary* dictionary);

/// Returns the boolean or 32-bit integer reading of the value under a key; the default if the key
/// is missing or its value is neither a number nor a text.
bool GetBoolValueForKey(const gps::Dictionary* dictionary, const char* key, bool defaultValue);
std::int32_t GetIntValueForKey(const gps::Dictionary* dictionary, const char* key,
                               std::int32_t defaultValue);

// Setters. All but the last remove the key first, so that the new entry becomes the last one.
void SetFloatInDictionary(gps::Dictionary* dictionary, const char* key, float value);
void SetIntInDictionary(gps::Dictionary* dictionary, const char* key, std::int32_t value);

/// Stores a number of the given type, read from the bytes at `value`. An invalid type is ignored.
void SetNumberInDictionary(gps::Dictionary* dictionary, const char* key, gps::NumberType type,
                           const void* value);

/// Stores a text in 7-bit ASCII. One with a byte above 127 is ignored; an older value stays.
void SetCStringInDictionary(gps::Dictionary* dictionary, const char* key, const char* text);
void SetCStringInDictionaryIfNotEmpty(gps::Dictionary* dictionary, const char* key,
                                      const char* text);

/// Stores a text in ISO 8859-1.
void SetLatin1CStringInDictionary(gps::Dictionary* dictionary, const char* key, const char* text);
void SetLatin1CStringInDictionaryIfNotEmpty(gps::Dictionary* dictionary, const char* key,
                                            const char* text);

/// Stores list[index] if 0 <= index <= lastIndex. `lastIndex` is the highest valid index, not the
/// length.
void SetStringInDictionaryFromCStringList(gps::Dictionary* dictionary, const char* key,
                                          const char* const* list, std::int32_t lastIndex,
                                          std::int32_t index);
void SetStringInDictionaryFromCFStringList(gps::Dictionary* dictionary, const char* key,
                                           const std::string* list, std::int32_t lastIndex,
                                           std::int32_t index);

/// Stores a boxed point. An existing key keeps its position.
void SetGPSPointInDictionary(gps::Dictionary* dictionary, const char* key, gps::GPSPoint point);

/// Returns how many seconds a time zone is ahead of GMT, now or at a time given in seconds since
/// 1970-01-01 00:00 UTC; 0 for an unknown name or null.
std::int32_t GetGMTOffsetFromTimeZoneName(const char* name);
std::int32_t GetGMTOffsetFromTimeZoneNameWithUnixTime(const char* name, std::int64_t unixTime);

} // extern "C"
#pragma GCC visibility pop

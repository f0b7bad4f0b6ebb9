// SPDX-License-Identifier: MIT
// Helpers for dictionaries, the debug level and time zones, exported from the plug-in's module
// under exactly these names for whoever loads it. They share no state but the debug level, a plain
// global that the host thread sets before any worker starts; a dictionary belongs to its caller. A
// null dictionary makes every setter do nothing and every getter answer its default.

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

/// The plug-in's own copy of the debug level; 0 at first.
extern std::int32_t GarminDebugLevel;

/// Stores the level, here and in the framework.
void GarminSetDebugLevel(std::int32_t level);

/// Whether the framework debugs at a level; GarminDebugLevel is not looked at.
bool DebugLevelIs(std::int32_t level);

/// Sets the level to the reading of "debug": 0 without one, but 1 for a "debug" of 0, whose mere
/// presence asks for debugging. A null dictionary changes nothing.
void SetDebugLevelFromDictionary(const gps::Dictionary* dictionary);

/// The boolean, or 32-bit integer, reading of the value under a key; the default without a value
/// that has one.
bool GetBoolValueForKey(const gps::Dictionary* dictionary, const char* key, bool defaultValue);
std::int32_t GetIntValueForKey(const gps::Dictionary* dictionary, const char* key,
                               std::int32_t defaultValue);

/// Each of these removes the key first, so that the new value stands last.
void SetFloatInDictionary(gps::Dictionary* dictionary, const char* key, float value);
void SetIntInDictionary(gps::Dictionary* dictionary, const char* key, std::int32_t value);

/// A number of a stated type, built from the bytes at `value`. A type that is none is not stored.
void SetNumberInDictionary(gps::Dictionary* dictionary, const char* key, gps::NumberType type,
                           const void* value);

/// Text in 7-bit ASCII; one with a byte above 127 cannot be decoded and is not stored, an older
/// value stays.
void SetCStringInDictionary(gps::Dictionary* dictionary, const char* key, const char* text);
void SetCStringInDictionaryIfNotEmpty(gps::Dictionary* dictionary, const char* key,
                                      const char* text);

/// Text in ISO 8859-1.
void SetLatin1CStringInDictionary(gps::Dictionary* dictionary, const char* key, const char* text);
void SetLatin1CStringInDictionaryIfNotEmpty(gps::Dictionary* dictionary, const char* key,
                                            const char* text);

/// list[index] where 0 <= index <= lastIndex, the highest valid index; otherwise nothing happens.
void SetStringInDictionaryFromCStringList(gps::Dictionary* dictionary, const char* key,
                                          const char* const* list, std::int32_t lastIndex,
                                          std::int32_t index);
void SetStringInDictionaryFromCFStringList(gps::Dictionary* dictionary, const char* key,
                                           const std::string* list, std::int32_t lastIndex,
                                           std::int32_t index);

/// Boxes a point. A key that is there keeps its place.
void SetGPSPointInDictionary(gps::Dictionary* dictionary, const char* key, gps::GPSPoint point);

/// Seconds that a zone is ahead of GMT now, or at an instant (seconds since 1970-01-01 00:00 UTC);
/// 0 for an unknown name.
std::int32_t GetGMTOffsetFromTimeZoneName(const char* name);
std::int32_t GetGMTOffsetFromTimeZoneNameWithUnixTime(const char* name, std::int64_t unixTime);

} // extern "C"
#pragma GCC visibility pop

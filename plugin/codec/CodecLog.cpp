// SPDX-License-Identifier: MIT
// The wording is fixed: people search logs for it.

#include "CodecLog.h"

#include <gps/Value.h>
#include <platform/System/Log.h>

#include <string>

namespace magellan {

void logMissingPoint(std::string_view kind, const gps::Value& record)
{
    const auto* dictionary = record.as<gps::Dictionary>();
    const auto* name = dictionary != nullptr ? dictionary->findString("name") : nullptr;
    gps::logLine(std::string{kind} + " " + (name != nullptr ? *name : "(null)") +
                 " contains no point --\n" + gps::describe(record));
}

void logFailedSentence(const gps::Value& record)
{
    gps::logLine("failed to create sentence for list from " + gps::describe(record));
}

} // namespace magellan

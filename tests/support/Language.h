// SPDX-License-Identifier: MIT
// Language: the environment variables for the user's language during its lifetime.

#pragma once

#include "support/Variable.h"

namespace support {

class Language {
public:
    /// The values of LC_ALL, LC_MESSAGES and LANG; null: the variable is not set.
    Language(const char* all, const char* messages, const char* lang)
        : all_("LC_ALL", all), messages_("LC_MESSAGES", messages), lang_("LANG", lang)
    {}

private:
    Variable all_;
    Variable messages_;
    Variable lang_;
};

} // namespace support

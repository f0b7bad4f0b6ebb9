// SPDX-License-Identifier: MIT
// Language: the environment variables for the user's language during its lifetime.

#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace support {

class Language {
public:
    /// The values of LC_ALL, LC_MESSAGES and LANG; null: the variable is not set.
    Language(const char* all, const char* messages, const char* lang)
    {
        const std::pair<const char*, const char*> variables[] = {
            {"LC_ALL", all}, {"LC_MESSAGES", messages}, {"LANG", lang}};
        for (const auto& [name, value] : variables) {
            const char* const present = std::getenv(name);
            before_.emplace_back(name, present != nullptr ? std::optional<std::string>{present}
                                                          : std::nullopt);
            set(name, value);
        }
    }
    ~Language()
    {
        for (const auto& [name, value] : before_)
            set(name, value ? value->c_str() : nullptr);
    }
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

private:
    static void set(const char* name, const char* value)
    {
        if (value != nullptr)
            ::setenv(name, value, 1);
        else
            ::unsetenv(name);
    }

    std::vector<std::pair<const char*, std::optional<std::string>>> before_;
};

} // namespace support

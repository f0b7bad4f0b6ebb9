// SPDX-License-Identifier: MIT
// Variable: an environment variable with another value during its lifetime.

#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace support {

class Variable {
public:
    /// @param value  null: the variable is not set
    Variable(const char* name, const char* value) : name_(name)
    {
        if (const char* const before = std::getenv(name))
            before_ = before;
        set(value);
    }
    ~Variable() { set(before_ ? before_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    void set(const char* value) const
    {
        if (value != nullptr)
            ::setenv(name_, value, 1);
        else
            ::unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> before_;
};

} // namespace support

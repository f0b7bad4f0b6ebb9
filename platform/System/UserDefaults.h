// SPDX-License-Identifier: MIT
// User defaults: settings that the user has stored, overridden by those that the host's command
// line sets for one run. They are stored in $XDG_CONFIG_HOME/com.Orvane.GPSPlugin/defaults.plist,
// or below $HOME/.config if XDG_CONFIG_HOME is not set. [host thread]

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gps {

class UserDefaults {
public:
    /// The process's defaults. The file is read again for every query, so that changes take effect
    /// without a restart. [host thread]
    [[nodiscard]] static UserDefaults& standard();

    /// @param path  the property list to read; it need not exist
    explicit UserDefaults(std::string path);

    /// Overrides a stored value until the process ends. An empty value removes the override.
    /// [host thread]
    void setForThisRun(std::string_view key, Value value);

    /// `stringArrayForKey:`: the array of strings under a key; nullopt if the key is missing or its
    /// value is anything else. [host thread]
    [[nodiscard]] std::optional<std::vector<std::string>>
    stringArrayForKey(std::string_view key) const;

private:
    std::string path_;
    Dictionary thisRun_;
};

} // namespace gps

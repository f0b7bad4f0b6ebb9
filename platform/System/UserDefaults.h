// SPDX-License-Identifier: MIT
// User defaults: what the user has set for good, and in front of it what the host's command line
// sets for this run. The file is $XDG_CONFIG_HOME/com.Orvane.GPSPlugin/defaults.plist
// ($HOME/.config when that is not set). [host thread]

#pragma once

#include <gps/Value.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gps {

class UserDefaults {
public:
    /// The process's own. Reads the file anew at each question, so that a change is seen without a
    /// restart.
    [[nodiscard]] static UserDefaults& standard();

    /// @param path  the property list to read; it need not exist
    explicit UserDefaults(std::string path);

    /// Puts a value in front of the stored one until the process ends. None takes it away.
    void setForThisRun(std::string_view key, Value value);

    /// `stringArrayForKey:`: none when the key is missing or its value is not an array of strings
    /// alone.
    [[nodiscard]] std::optional<std::vector<std::string>>
    stringArrayForKey(std::string_view key) const;

private:
    std::string path_;
    Dictionary thisRun_;
};

} // namespace gps

// SPDX-License-Identifier: MIT
// Runs the built simulator in the background, with the sample receiver's data.

#pragma once

#include "system/Running.h"

#include <string>
#include <utility>
#include <vector>

namespace support {

class Simulator : public Running {
public:
    /// @param options  further command-line options
    explicit Simulator(std::vector<std::string> options = {})
        : Running(wordsWith(std::move(options)))
    {
        const auto& printed = readUntil("\n");
        path_ = printed.substr(0, printed.find('\n'));
    }

    /// The path of its port.
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    static std::vector<std::string> wordsWith(std::vector<std::string> options)
    {
        std::vector<std::string> words{MAGELLAN_BIN_DIR "/magellangps-simulator",
                                       MAGELLAN_SOURCE_DIR "/samples/receiver", "--unpaced"};
        words.insert(words.end(), options.begin(), options.end());
        return words;
    }

    std::string path_;
};

} // namespace support

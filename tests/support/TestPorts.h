// SPDX-License-Identifier: MIT
// TestPorts: paths that are listed as serial ports during its lifetime, instead of the user's.

#pragma once

#include <platform/OrvUtils/SerialPorts.h>
#include <platform/System/UserDefaults.h>

#include <string>
#include <utility>
#include <vector>

namespace support {

class TestPorts {
public:
    explicit TestPorts(const std::vector<std::string>& paths) { set(paths); }
    ~TestPorts() { gps::UserDefaults::standard().setForThisRun(gps::kTestPortsKey, {}); }
    TestPorts(const TestPorts&) = delete;
    TestPorts& operator=(const TestPorts&) = delete;

    static void set(const std::vector<std::string>& paths)
    {
        gps::UserDefaults::standard().setForThisRun(gps::kTestPortsKey,
                                                    gps::Array(paths.begin(), paths.end()));
    }
};

} // namespace support

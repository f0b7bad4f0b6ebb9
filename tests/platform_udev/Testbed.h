// SPDX-License-Identifier: MIT
// A device tree and a mount table of a test's own, seen through the real device database. The program must run under
// umockdev-wrapper.

#pragma once

#include <stdexcept>
#include <string>

#include <umockdev.h>

#include <support/TemporaryFolder.h>

namespace support {

class Testbed {
public:
    Testbed() : testbed_(umockdev_testbed_new()) {}
    ~Testbed() { g_object_unref(testbed_); }
    Testbed(const Testbed&) = delete;
    Testbed& operator=(const Testbed&) = delete;

    /// Adds devices in the form of umockdev's own descriptions.
    void add(const std::string& devices) const
    {
        GError* error = nullptr;
        if (umockdev_testbed_add_from_string(testbed_, devices.c_str(), &error) == FALSE)
            throw std::invalid_argument{error->message};
    }

    /// Takes a device out of the tree, and tells so.
    void remove(const std::string& device) const
    {
        announce(device, "remove");
        umockdev_testbed_remove_device(testbed_, ("/sys" + device).c_str());
    }

    /// Adds a disk and its first partition below a device of the tree.
    void addDisk(const std::string& parent, const std::string& name, unsigned int major, unsigned int minor, bool removable) const
    {
        const auto partition = name + (name.back() >= '0' && name.back() <= '9' ? "p1" : "1");
        add(block(parent + "/block/" + name, name, "disk", major, minor) + "A: removable=" + (removable ? "1" : "0") + "\\n\n\n" +
            block(parent + "/block/" + name + "/" + partition, partition, "partition", major, minor + 1) + "\n");
    }

    /// What happens to a device: "add", "remove", "change".
    void announce(const std::string& device, const std::string& action) const
    {
        umockdev_testbed_uevent(testbed_, ("/sys" + device).c_str(), action.c_str());
    }

    /// For what else the mocked tree can do.
    [[nodiscard]] UMockdevTestbed* get() const { return testbed_; }

    /// The mount table of these lines.
    [[nodiscard]] std::string mountTable(const std::string& lines) const { return folder_.put("mountinfo", lines); }

private:
    static std::string block(const std::string& path, const std::string& name, const std::string& kind, unsigned int major,
                             unsigned int minor)
    {
        const auto number = std::to_string(major) + ":" + std::to_string(minor);
        return "P: " + path + "\nN: " + name + "\nE: SUBSYSTEM=block\nE: DEVTYPE=" + kind + "\nE: DEVNAME=/dev/" + name +
               "\nE: MAJOR=" + std::to_string(major) + "\nE: MINOR=" + std::to_string(minor) + "\nA: dev=" + number + "\\n\n";
    }

    UMockdevTestbed* testbed_;
    TemporaryFolder folder_;
};

} // namespace support
